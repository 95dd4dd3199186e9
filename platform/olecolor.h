#pragma once

#include "fractionplatform_export.h"

#include <QColor>
#include <QPalette>

namespace kelfractionint {

/*!
 * OLE colours: 0x00BBGGRR for a fixed colour, or 0x80000000 | index for a system colour, which
 * stands for a role of a palette and is looked up when it is painted, so that it follows the
 * theme. The indexes are the standard ones; each maps to the palette role that plays its part
 * in Qt (the face of a form is the palette's Window, the face of an edit box its Base).
 */
namespace olecolor {

constexpr quint32 systemflag = 0x80000000u;
constexpr quint32 scrollbar = systemflag | 0;
constexpr quint32 desktop = systemflag | 1;
constexpr quint32 activecaption = systemflag | 2;
constexpr quint32 inactivecaption = systemflag | 3;
constexpr quint32 menu = systemflag | 4;
constexpr quint32 window = systemflag | 5;
constexpr quint32 windowframe = systemflag | 6;
constexpr quint32 menutext = systemflag | 7;
constexpr quint32 windowtext = systemflag | 8;
constexpr quint32 captiontext = systemflag | 9;
constexpr quint32 activeborder = systemflag | 10;
constexpr quint32 inactiveborder = systemflag | 11;
constexpr quint32 appworkspace = systemflag | 12;
constexpr quint32 highlight = systemflag | 13;
constexpr quint32 highlighttext = systemflag | 14;
constexpr quint32 buttonface = systemflag | 15;
constexpr quint32 buttonshadow = systemflag | 16;
constexpr quint32 graytext = systemflag | 17;
constexpr quint32 buttontext = systemflag | 18;
constexpr quint32 inactivecaptiontext = systemflag | 19;
constexpr quint32 buttonhighlight = systemflag | 20;
constexpr quint32 darkshadow = systemflag | 21;
constexpr quint32 light = systemflag | 22;
constexpr quint32 infotext = systemflag | 23;
constexpr quint32 infobackground = systemflag | 24;
constexpr quint32 hotlight = systemflag | 26;
constexpr quint32 gradientactivecaption = systemflag | 27;
constexpr quint32 gradientinactivecaption = systemflag | 28;
constexpr quint32 menuhighlight = systemflag | 29;
constexpr quint32 menubar = systemflag | 30;

/*! True for a system colour with a standard index (0 to 30). */
FRACTIONPLATFORM_EXPORT bool issystem(quint32 ole);
/*! \a ole as a QColor: a system colour is read from \a palette (the active group; gray text from
 *  the disabled one); any other value is 0x00BBGGRR, its high byte ignored. */
FRACTIONPLATFORM_EXPORT QColor toqcolor(quint32 ole, const QPalette &palette);
/*! A fixed colour as an OLE colour (0x00BBGGRR); transparency is dropped. */
FRACTIONPLATFORM_EXPORT quint32 fromqcolor(const QColor &color);
/*! The standard name of a system colour ("Button Face", "Window Text", ...); empty for others. */
FRACTIONPLATFORM_EXPORT QString systemname(quint32 ole);

} // namespace olecolor
} // namespace kelfractionint
