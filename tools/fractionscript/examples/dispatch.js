// Binding by dispatch id, as a compiled container does, and the type library listing.
var f = createfraction();
dispinvoke(f, 0x68030019, "let", "-3");                 // Wholepartvalue
print(dispinvoke(f, 0x68030019, "get"));
dispinvoke(f, -501, "let", 0x00FFFF);                   // Backcolor
print(f.Backcolor.toString(16));
print(typelibrary().split("\n").filter(function (line) {
    return line.indexOf("HRESULT Wholepartvalue") >= 0;
}).join("\n"));
print(modfracglobal.strfractodecimal(["", "1", "3"], 4));
