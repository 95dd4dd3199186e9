// A new control shows 4 1/7; its value is three texts, the sign carried by the whole part.
var f = createfraction();
print(f.Wholepartvalue, f.Numeratorvalue, f.Denominatorvalue);

f.loadfraction(["", "6", "8"]);
print(f.reduce());          // the reduced record; the control still shows 6/8
print(f.Numerdenomgcd);

f.Autoreplace = true;       // now conversions load their result into the control
f.reduce();
print(f.Numeratorvalue + "/" + f.Denominatorvalue);
