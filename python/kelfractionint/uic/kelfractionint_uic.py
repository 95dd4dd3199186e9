# PyQt6 uic widget plugin: forms saved by Qt Designer hold the control as the C++ class
# kelfractionint::fractioni from fractioni.h, and its enumerations by their C++ names.
from PyQt6.uic.enum_map import EnumMap

pluginType = CW_FILTER  # noqa: F821 (set by uic's plugin loader)

for _enum, _members in (("fracBorderstyle", ("borderstylenone", "borderstylefixed")),
                        ("fractiontype", ("fracnumeric", "fracAlgebraic"))):
    for _member in _members:
        EnumMap["kelfractionint::fractioni::" + _member] = \
            "kelfractionint::fractioni::%s::%s" % (_enum, _member)


def getFilter():
    # uic looks the class up as the scope "kelfractionint" and its member "fractioni": the
    # scope is the C++ namespace inside the extension module.
    def _filter(widgetclass, baseclass, module):
        if widgetclass == "kelfractionint::fractioni":
            return True, ("kelfractionint", baseclass, "kelfractionint.kelfractionint")
        return False, None

    return _filter
