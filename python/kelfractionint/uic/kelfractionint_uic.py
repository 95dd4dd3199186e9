# PyQt6 uic widget plugin: forms saved by Qt Designer hold the control as the C++ class
# kelfractionint::fractioni (from fractioni.h) and its enumerations by their C++ names; uic
# reads them as kelfractionint.fractioni and the scope kelfractionint.
from PyQt6.uic.enum_map import EnumMap

pluginType = MODULE  # noqa: F821 (set by uic's plugin loader)

for _enum, _members in (("fracBorderstyle", ("borderstylenone", "borderstylefixed")),
                        ("fractiontype", ("fracnumeric", "fracAlgebraic"))):
    for _member in _members:
        EnumMap["kelfractionint::fractioni::" + _member] = \
            "kelfractionint::fractioni::%s::%s" % (_enum, _member)


def moduleInformation():
    return "kelfractionint", ("kelfractionint.fractioni", "kelfractionint")
