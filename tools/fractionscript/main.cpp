// fractionscript: runs a script that places fraction controls on a form and drives them.
//
//   fractionscript [--locale NAME] [--design] [--show] FILE.js
//   fractionscript [--locale NAME] [--design] [--show] -e CODE
//
// Exit status: 0 when the script ran to its end, 1 for an uncaught error (printed on standard
// error), 2 for a usage error.

#include "scripthost.h"

#include "ambient.h"
#include "hostnumbers.h"

#include <QApplication>
#include <QFile>
#include <QLocale>
#include <QTextStream>
#include <QWidget>

#include <cstdio>
#include <cstring>
#include <optional>
#include <string>

namespace {

const char *usage = "usage: fractionscript [--locale NAME] [--design] [--show] (FILE.js | -e CODE)\n"
                    "  --locale NAME  number and text locale of the host (C, en_US, de_DE, ...)\n"
                    "  --design       run the controls in design mode (UserMode False)\n"
                    "  --show         keep the form on screen until it is closed\n";

struct options
{
    std::optional<QString> locale;
    bool design = false;
    bool show = false;
    QString code;
    QString filename;
};

// Nothing for a usage error.
std::optional<options> parse(int argc, char **argv)
{
    options result;
    bool haveprogram = false;
    for (int i = 1; i < argc; ++i) {
        const char *arg = argv[i];
        if (std::strcmp(arg, "--design") == 0) {
            result.design = true;
        } else if (std::strcmp(arg, "--show") == 0) {
            result.show = true;
        } else if (std::strcmp(arg, "--locale") == 0 && i + 1 < argc) {
            result.locale = QString::fromLocal8Bit(argv[++i]);
        } else if (std::strcmp(arg, "-e") == 0 && i + 1 < argc && !haveprogram) {
            result.code = QString::fromLocal8Bit(argv[++i]);
            result.filename = QStringLiteral("<code>");
            haveprogram = true;
        } else if (arg[0] != '-' && !haveprogram) {
            result.filename = QString::fromLocal8Bit(arg);
            haveprogram = true;
        } else {
            return std::nullopt;
        }
    }
    if (!haveprogram)
        return std::nullopt;
    return result;
}

bool hasdisplay()
{
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

// The locale named on the command line, or nothing when Qt does not know it.
std::optional<QLocale> localenamed(const QString &name)
{
    const QLocale locale(name);
    if (locale.language() == QLocale::C && name != QLatin1String("C") && name != QLatin1String("POSIX"))
        return std::nullopt;
    return locale;
}

} // namespace

int main(int argc, char **argv)
{
    const std::optional<options> opts = parse(argc, argv);
    if (argc == 2 && (std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0)) {
        std::fputs(usage, stdout);
        return 0;
    }
    if (!opts) {
        std::fputs(usage, stderr);
        return 2;
    }
    if (opts->show && !hasdisplay() && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        std::fputs("fractionscript: --show needs a display\n", stderr);
        return 2;
    }
    if (!hasdisplay() && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");

    QApplication app(argc, argv);

    if (opts->locale) {
        const std::optional<QLocale> locale = localenamed(*opts->locale);
        if (!locale) {
            std::fprintf(stderr, "fractionscript: unknown locale %s\n", qPrintable(*opts->locale));
            return 2;
        }
        QLocale::setDefault(*locale);
        modfracglobal::setnumberlocale({locale->decimalPoint().toStdString(), locale->groupSeparator().toStdString()});
    }
    kelfractionint::ambient::setdefaultdesignmode(opts->design);

    QString code = opts->code;
    if (code.isEmpty() && opts->filename != QLatin1String("<code>")) {
        QFile file(opts->filename);
        if (!file.open(QIODevice::ReadOnly)) {
            std::fprintf(stderr, "fractionscript: cannot read %s\n", qPrintable(opts->filename));
            return 2;
        }
        code = QString::fromUtf8(file.readAll());
        // A script may start with "#!" to run as a program; the line stays, as a comment, so
        // that line numbers hold.
        if (code.startsWith(QLatin1String("#!")))
            code.replace(0, 2, QStringLiteral("//"));
    }

    kelfractionint::scripthost host;
    QWidget *form = host.form();
    if (!opts->show)
        form->setAttribute(Qt::WA_DontShowOnScreen);
    form->show();

    const QJSValue result = host.evaluate(code, opts->filename);
    if (result.isError()) {
        QTextStream(stderr) << kelfractionint::scripthost::errortext(result) << '\n';
        return 1;
    }
    if (opts->show) {
        form->adjustSize();
        return app.exec();
    }
    return 0;
}
