#include "olecolor.h"

#include "twips.h"

#include <QString>

#include <array>

namespace kelfractionint::olecolor {

namespace {

struct systementry
{
    QPalette::ColorRole role;
    const char *name;
};

// By index; gray text is the disabled group's text and is handled apart.
constexpr std::array<systementry, 31> systemcolours{{
    {QPalette::Button, "Scroll Bars"},
    {QPalette::Window, "Desktop"},
    {QPalette::Highlight, "Active Title Bar"},
    {QPalette::Mid, "Inactive Title Bar"},
    {QPalette::Window, "Menu Bar"},
    {QPalette::Base, "Window Background"},
    {QPalette::Shadow, "Window Frame"},
    {QPalette::WindowText, "Menu Text"},
    {QPalette::WindowText, "Window Text"},
    {QPalette::HighlightedText, "Active Title Bar Text"},
    {QPalette::Window, "Active Border"},
    {QPalette::Window, "Inactive Border"},
    {QPalette::Dark, "Application Workspace"},
    {QPalette::Highlight, "Highlight"},
    {QPalette::HighlightedText, "Highlight Text"},
    {QPalette::Window, "Button Face"},
    {QPalette::Dark, "Button Shadow"},
    {QPalette::Text, "Disabled Text"},
    {QPalette::ButtonText, "Button Text"},
    {QPalette::WindowText, "Inactive Title Bar Text"},
    {QPalette::Light, "Button Highlight"},
    {QPalette::Shadow, "Button Dark Shadow"},
    {QPalette::Midlight, "Button Light Shadow"},
    {QPalette::ToolTipText, "ToolTip Text"},
    {QPalette::ToolTipBase, "ToolTip"},
    {QPalette::Window, ""},
    {QPalette::Link, "Hot Light"},
    {QPalette::Highlight, "Gradient Active Title Bar"},
    {QPalette::Mid, "Gradient Inactive Title Bar"},
    {QPalette::Highlight, "Menu Highlight"},
    {QPalette::Window, "Menu Bar Face"},
}};

} // namespace

bool issystem(quint32 ole)
{
    return (ole & systemflag) && (ole & ~systemflag) < systemcolours.size() && ole != (systemflag | 25);
}

QColor toqcolor(quint32 ole, const QPalette &palette)
{
    if (!issystem(ole))
        return fromoleColor(ole);
    const quint32 index = ole & ~systemflag;
    if (ole == graytext)
        return palette.color(QPalette::Disabled, QPalette::Text);
    return palette.color(QPalette::Active, systemcolours.at(index).role);
}

quint32 fromqcolor(const QColor &color)
{
    return tooleColor(color);
}

QString systemname(quint32 ole)
{
    return issystem(ole) ? QString::fromLatin1(systemcolours.at(ole & ~systemflag).name) : QString();
}

} // namespace kelfractionint::olecolor
