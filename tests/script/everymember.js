// Drives every member of the control's interface by its name; the run must end cleanly.
function check(condition, what) {
    if (!condition)
        throw new Error("unexpected result of " + what);
}
function isrecord(value) {
    return Array.isArray(value) && (value.length === 0 || value.length === 3);
}

var a = createfraction(), b = createfraction(), r = createfraction(), holder = createfraction();

// Value
a.Numeratorvalue = "3";
check(a.Numeratorvalue === "3", "Numeratorvalue");
a.Denominatorvalue = "4";
check(a.Denominatorvalue === "4", "Denominatorvalue");
a.Wholepartvalue = "1";
check(a.Wholepartvalue === "1", "Wholepartvalue");
check(a.getsign() === "+", "getsign");
check(a.changesign() === a && a.Wholepartvalue === "-1", "changesign");
a.changesign();
check(a.loadfraction(["", "6", "8"]) === a, "loadfraction");
a.Forcesign = true;
check(a.Forcesign === true && a.Wholepartvalue === "+", "Forcesign");
a.Forcesign = false;
a.Autoreplace = false;
check(a.Autoreplace === false, "Autoreplace");
a.FracType = 0;
check(a.FracType === 0, "FracType");
check(a.Numerdenomgcd === 2, "Numerdenomgcd");

// Appearance
a.fracsize(1500, 700);
a.Fractionslash = false;
check(a.Fractionslash === false, "Fractionslash");
a.Backcolor = 0xE0FFFF;
check(a.Backcolor === 0xE0FFFF, "Backcolor");
a.Userresizeable = true;
check(a.Userresizeable === true, "Userresizeable");
a.Borderstyle = 1;
check(a.Borderstyle === 1, "Borderstyle");
a.Negforecolor = 0x0000C0;
check(a.Negforecolor === 0x0000C0, "Negforecolor");
a.Posforecolor = 0x004000;
check(a.Posforecolor === 0x004000, "Posforecolor");
a.Wholepartbackcolor = 0xF0F0F0;
check(a.Wholepartbackcolor === 0xF0F0F0, "Wholepartbackcolor");
a.Numeratorbackcolor = 0xF0FFF0;
check(a.Numeratorbackcolor === 0xF0FFF0, "Numeratorbackcolor");
a.Denominatorbackcolor = 0xFFF0F0;
check(a.Denominatorbackcolor === 0xFFF0F0, "Denominatorbackcolor");
a.Font = {Name: a.Font.Name, Size: 14, Bold: true};
check(a.Font.Bold === true && a.Font.Size === 14, "Font");
a.Fracpartvisible = true;
check(a.Fracpartvisible === true, "Fracpartvisible");
a.Refreshfraction();

// Window
holder.Container = a;
try {
    a.Container;
    check(false, "Container (read)");
} catch (e) {
    check(e.number === 91, "Container (read)");
}
check(typeof a.hWnd === "number", "hWnd");
check(a.Picture.Width > 0 && a.Picture.Height > 0, "Picture");

// Text entry
a.Wholeallowedchars = ["-", "+", "0", "1", "2", "3", "4", "5", "6", "7", "8", "9"];
check(a.Wholeallowedchars.length === 12, "Wholeallowedchars");
check(a.wholecharallowed("7") === true && a.wholecharallowed("x") === false, "wholecharallowed");
a.Numerallowedchars = ["0", "1", "2", "3", "4", "5", "6", "7", "8", "9"];
check(a.Numerallowedchars.length === 10, "Numerallowedchars");
a.Denomallowedchars = ["0", "1", "2", "3", "4", "5", "6", "7", "8", "9"];
check(a.Denomallowedchars.length === 10, "Denomallowedchars");
a.WholepartLocked = true;
check(a.WholepartLocked === true, "WholepartLocked");
a.WholepartLocked = false;
a.NumeratorLocked = true;
check(a.NumeratorLocked === true, "NumeratorLocked");
a.NumeratorLocked = false;
a.DenominatorLocked = true;
check(a.DenominatorLocked === true, "DenominatorLocked");
a.DenominatorLocked = false;

// Operations on the control's own value
a.loadfraction(["1", "6", "8"]);
check(isrecord(a.reduce()), "reduce");
check(isrecord(a.fractomixed()), "fractomixed");
check(isrecord(a.expand(3)), "expand");
check(isrecord(a.mixedtofrac()), "mixedtofrac");
check(isrecord(a.invert()), "invert");
check(isrecord(a.fractodecimal(3)), "fractodecimal");
check(isrecord(a.fractopercent(2)), "fractopercent");
b.loadfraction(["0.25", "", ""]);
check(isrecord(b.decimaltofrac()), "decimaltofrac");
b.loadfraction(["12.5%", "", ""]);
check(isrecord(b.percenttofrac()), "percenttofrac");

// Operations on several controls
b.loadfraction(["", "1", "3"]);
check(isrecord(a.addfractions([a, b])), "addfractions");
check(isrecord(a.multiplyfractions({Count: 2, Item: function (i) { return i === 1 ? a : b; }})), "multiplyfractions");
check(isrecord(a.dividefractions(a, b)), "dividefractions");
check(isrecord(a.subtractfractions(a, b)), "subtractfractions");
check(isrecord(a.addtwofractions(a, b)), "addtwofractions");
check(isrecord(a.multiplytwofractions(a, b)), "multiplytwofractions");
r.loadfraction(["", "1", "2"]);
check(r.addintofraction(r, b) === r, "addintofraction");
check(r.subtractintofraction(r, b) === r, "subtractintofraction");
check(r.divideintofraction(r, b) === r, "divideintofraction");
check(r.multiplyintofraction(r, b) === r, "multiplyintofraction");
check(r.clearfraction() === r && r.Numeratorvalue === "", "clearfraction");

check(messages().length === 0, "no message shown");
print("every member ran");
