#pragma once

#include "fractioni_export.h"

#include <QString>
#include <QStringList>

namespace kelfractionint {

/*!
 * The type library `kelfractionint` as text, in the style of an IDL listing: the library with its
 * help file, the two enumerations, the dispatch interface `_fractioni` in member order with each
 * member's dispatch id, kind and help string, the event interface `__fractioni`, and the classes
 * fractioni, fractionvalues and fractionappearance with their programmatic identifiers. Object
 * browsers and users read it; it is generated from the dispatch table (fractionidispatch.h).
 */
FRACTIONI_EXPORT QString typelibrarytext();

/*! "kelfractionint.fractioni", "kelfractionint.fractionvalues", "kelfractionint.fractionappearance". */
FRACTIONI_EXPORT QStringList typelibraryprogids();

/*! The library's help file, "Kel0101.hlp". */
FRACTIONI_EXPORT QString typelibraryhelpfile();

} // namespace kelfractionint
