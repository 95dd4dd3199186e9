#include "typelibrary.h"

#include "fractionidispatch.h"

#include <QTextStream>

#include <iterator>

namespace kelfractionint {

namespace {

// Fixed once for this library: containers and registries keep them, so they never change.
constexpr const char *libraryuuid = "77d05a77-187f-4ec6-a195-d2eeb5af0977";
constexpr const char *fractioniinterfaceuuid = "efd28578-961d-4e6c-bbe1-727a240f32db";
constexpr const char *fractionieventsuuid = "1e70c12f-b5e8-44e3-9b27-0c5f76972123";
constexpr const char *fractioniclassuuid = "2b7dc419-a894-46b6-8133-4223e0f9b946";
constexpr const char *valuesinterfaceuuid = "643cfb3d-ee69-4026-9cd9-5b2bae96cc86";
constexpr const char *valuesclassuuid = "37bf9cc1-9f45-4c5d-85d3-dfeb78900f40";
constexpr const char *appearanceinterfaceuuid = "d3a6afe1-6713-4623-918d-cc9ac08e78e9";
constexpr const char *appearanceclassuuid = "6c2ebd9f-48d7-4255-b346-3d2a2e98fec5";
constexpr const char *borderstyleuuid = "f4b5009a-05b1-4121-b6f8-8566ed4553b2";
constexpr const char *fractiontypeuuid = "99ffb7f7-cf19-44c5-8e85-222e4c51b861";

constexpr const char *libraryname = "kelfractionint";
constexpr const char *helpfile = "Kel0101.hlp";

QString idltype(automationtype type)
{
    // In the order of automationtype.
    static const char *const names[] = {"",        "BSTR",      "VARIANT_BOOL", "short",       "long",
                                        "single",  "OLE_COLOR", "fracBorderstyle", "fractiontype", "Font*",
                                        "Picture*", "IDispatch*", "_fractioni*", "SAFEARRAY(BSTR)", "VARIANT"};
    static_assert(std::size(names) == static_cast<std::size_t>(automationtype::variant) + 1);
    return QString::fromLatin1(names[static_cast<int>(type)]);
}

QString idlparameter(const dispparameter &parameter)
{
    if (parameter.byreference)
        return QStringLiteral("[in, out] %1* %2").arg(idltype(parameter.type), QLatin1String(parameter.name));
    return QStringLiteral("[in] %1 %2").arg(idltype(parameter.type), QLatin1String(parameter.name));
}

QString hexid(qint32 dispid)
{
    return QStringLiteral("0x%1").arg(static_cast<quint32>(dispid), 8, 16, QLatin1Char('0'));
}

QString memberattributes(const dispmember &member)
{
    QStringList attributes{QStringLiteral("id(%1)").arg(hexid(member.dispid))};
    switch (member.kind) {
    case invokekind::get:
        attributes << QStringLiteral("propget");
        break;
    case invokekind::let:
        attributes << QStringLiteral("propput");
        break;
    case invokekind::set:
        attributes << QStringLiteral("propputref");
        break;
    case invokekind::method:
        break;
    }
    if (*member.helpstring)
        attributes << QStringLiteral("helpstring(\"%1\")").arg(QLatin1String(member.helpstring));
    return attributes.join(QLatin1String(", "));
}

void writeenum(QTextStream &out, const char *uuid, const char *name,
               std::initializer_list<std::pair<const char *, int>> values)
{
    out << "    typedef [uuid(" << uuid << "), version(1.0)]\n"
        << "    enum {\n";
    int left = int(values.size());
    for (const auto &[label, value] : values)
        out << "        " << label << " = " << value << (--left ? ",\n" : "\n");
    out << "    } " << name << ";\n\n";
}

void writepage(QTextStream &out, const char *interfaceuuid, const char *classuuid, const char *name)
{
    out << "    [\n      odl,\n      uuid(" << interfaceuuid << "),\n      version(1.0),\n"
        << "      hidden,\n      dual,\n      nonextensible,\n      oleautomation\n    ]\n"
        << "    interface _" << name << " : IDispatch {\n    };\n\n"
        << "    // ProgID: " << libraryname << '.' << name << "\n"
        << "    [\n      uuid(" << classuuid << "),\n      version(1.0)\n    ]\n"
        << "    coclass " << name << " {\n        [default] interface _" << name << ";\n    };\n\n";
}

} // namespace

QString typelibrarytext()
{
    QString text;
    QTextStream out(&text);
    out << "// Type library " << libraryname << ", version 1.0\n\n"
        << "[\n  uuid(" << libraryuuid << "),\n  version(1.0),\n  helpfile(\"" << helpfile << "\")\n]\n"
        << "library " << libraryname << "\n{\n"
        << "    importlib(\"stdole2.tlb\");\n\n"
        << "    interface _fractioni;\n    dispinterface __fractioni;\n"
        << "    interface _fractionvalues;\n    interface _fractionappearance;\n\n";

    writeenum(out, borderstyleuuid, "fracBorderstyle", {{"borderstylenone", 0}, {"borderstylefixed", 1}});
    writeenum(out, fractiontypeuuid, "fractiontype", {{"fracnumeric", 0}, {"fracAlgebraic", 1}});

    out << "    [\n      odl,\n      uuid(" << fractioniinterfaceuuid << "),\n      version(1.0),\n"
        << "      hidden,\n      dual,\n      nonextensible,\n      oleautomation\n    ]\n"
        << "    interface _fractioni : IDispatch {\n";
    for (const dispmember &member : fractionimembers()) {
        QStringList parameters;
        for (const dispparameter &parameter : member.params())
            parameters << idlparameter(parameter);
        if (member.result != automationtype::none)
            parameters << QStringLiteral("[out, retval] %1*").arg(idltype(member.result));
        out << "        [" << memberattributes(member) << "]\n"
            << "        HRESULT " << member.name << '(' << parameters.join(QLatin1String(", ")) << ");\n";
    }
    out << "    };\n\n";

    out << "    // ProgID: " << libraryname << ".fractioni\n"
        << "    [\n      uuid(" << fractioniclassuuid << "),\n      version(1.0),\n      control\n    ]\n"
        << "    coclass fractioni {\n"
        << "        [default] interface _fractioni;\n"
        << "        [default, source] dispinterface __fractioni;\n    };\n\n";

    out << "    [\n      uuid(" << fractionieventsuuid << "),\n      version(1.0),\n"
        << "      hidden,\n      nonextensible\n    ]\n"
        << "    dispinterface __fractioni {\n        properties:\n        methods:\n";
    for (const dispevent &event : fractionievents()) {
        QStringList parameters;
        for (const dispparameter &parameter : event.params())
            parameters << idlparameter(parameter);
        out << "            [id(" << hexid(event.dispid) << ")]\n"
            << "            void " << event.name << '(' << parameters.join(QLatin1String(", ")) << ");\n";
    }
    out << "    };\n\n";

    writepage(out, valuesinterfaceuuid, valuesclassuuid, "fractionvalues");
    writepage(out, appearanceinterfaceuuid, appearanceclassuuid, "fractionappearance");
    out << "};\n";
    out.flush();
    return text;
}

QStringList typelibraryprogids()
{
    return {QStringLiteral("kelfractionint.fractioni"), QStringLiteral("kelfractionint.fractionvalues"),
            QStringLiteral("kelfractionint.fractionappearance")};
}

QString typelibraryhelpfile()
{
    return QString::fromLatin1(helpfile);
}

} // namespace kelfractionint
