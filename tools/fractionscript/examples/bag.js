// Save a control in a property bag and place a copy restored from it.
var f = createfraction();
f.Wholepartvalue = "-2";
f.Fractionslash = false;
var bag = createpropertybag();
f.WriteProperties(bag);
print(bag.keys().filter(function (key) { return !/color|Width|Height|Font/.test(key); }));
var copy = createfraction(bag);
print(copy.Wholepartvalue, copy.Numeratorvalue, copy.Denominatorvalue, copy.Fractionslash);
