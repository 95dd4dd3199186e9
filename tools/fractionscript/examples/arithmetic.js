// Operations on several controls return records; the ...intofraction methods load the result.
var a = createfraction(), b = createfraction(), r = createfraction();
a.loadfraction(["", "1", "2"]);
b.loadfraction(["", "1", "3"]);
print(a.addtwofractions(a, b));
print(a.multiplyfractions([a, b]));
r.loadfraction(["", "1", "4"]);
r.addintofraction(r, a).fractomixed();
print(r.Numeratorvalue + "/" + r.Denominatorvalue);

var empty = createfraction().loadfraction(["", "", ""]);
try {
    a.dividefractions(a, empty);
} catch (e) {
    print("error", e.number, e.description);
}
