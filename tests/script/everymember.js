// Drives every member of the control's interface by its name; the run must end cleanly.
function check(condition, what) {
    if (!condition)
        throw new Error("unexpected result of " + what);
}
function isrecord(value) {
    return Array.isArray(value) && (value.length === 0 || value.length === 3);
}

var a = createfraction(), b = createfraction(), r = createfraction(), holder = createfraction();

// Properties read back what was written.
[["Numeratorvalue", "3"], ["Denominatorvalue", "4"], ["Wholepartvalue", "1"], ["Autoreplace", false], ["FracType", 0],
 ["Fractionslash", false], ["Backcolor", 0xE0FFFF], ["Userresizeable", true], ["Borderstyle", 1],
 ["Negforecolor", 0x0000C0], ["Posforecolor", 0x004000], ["Wholepartbackcolor", 0xF0F0F0],
 ["Numeratorbackcolor", 0xF0FFF0], ["Denominatorbackcolor", 0xFFF0F0], ["Fracpartvisible", true], ["Forcesign", false],
 ["WholepartLocked", false], ["NumeratorLocked", false], ["DenominatorLocked", false]]
    .forEach(([name, value]) => { a[name] = value; check(a[name] === value, name); });
check(a.getsign() === "+", "getsign");
check(a.changesign() === a && a.Wholepartvalue === "-1", "changesign");
a.changesign();
check(a.loadfraction(["", "6", "8"]) === a, "loadfraction");
check(a.Numerdenomgcd === 2, "Numerdenomgcd");
a.fracsize(1500, 700);
a.Font = {Name: a.Font.Name, Size: 14, Bold: true};
check(a.Font.Bold === true && a.Font.Size === 14, "Font");
a.Refreshfraction();

// Window
holder.Container = a;
check(typeof a.hWnd === "number", "hWnd");
check(a.Picture.Width > 0 && a.Picture.Height > 0, "Picture");

// Text entry
const digits = [..."0123456789"];
[["Wholeallowedchars", ["-", "+", ...digits]], ["Numerallowedchars", digits], ["Denomallowedchars", digits]]
    .forEach(([name, set]) => { a[name] = set; check(a[name].length === set.length, name); });
check(a.wholecharallowed("7") === true && a.wholecharallowed("x") === false, "wholecharallowed");

// Operations on the control's own value
a.loadfraction(["1", "6", "8"]);
[["reduce"], ["fractomixed"], ["expand", 3], ["mixedtofrac"], ["invert"], ["fractodecimal", 3], ["fractopercent", 2]]
    .forEach(([name, ...args]) => check(isrecord(a[name](...args)), name));
b.loadfraction(["0.25", "", ""]);
check(isrecord(b.decimaltofrac()), "decimaltofrac");
b.loadfraction(["12.5%", "", ""]);
check(isrecord(b.percenttofrac()), "percenttofrac");

// Operations on several controls
b.loadfraction(["", "1", "3"]);
check(isrecord(a.addfractions([a, b])), "addfractions");
check(isrecord(a.multiplyfractions({Count: 2, Item: function (i) { return i === 1 ? a : b; }})), "multiplyfractions");
["dividefractions", "subtractfractions", "addtwofractions", "multiplytwofractions"]
    .forEach(name => check(isrecord(a[name](a, b)), name));
r.loadfraction(["", "1", "2"]);
["addintofraction", "subtractintofraction", "divideintofraction", "multiplyintofraction"]
    .forEach(name => check(r[name](r, b) === r, name));
check(r.clearfraction() === r && r.Numeratorvalue === "", "clearfraction");

check(messages().length === 0, "no message shown");
print("every member ran");
