// Tests the errors that scripts receive, and the objects that they may pass. errors.vbs does so in
// the other language. Requires a German user.
//   cscript //nologo errors.js
var failures = 0, checks = 0;
var kMismatch = "Typen unvertr\u00E4glich";
var kUnknown = "Objekt unterst\u00FCtzt diese Eigenschaft oder Methode nicht";
var kOverflow = "\u00DCberlauf";
var kIndex = "Index au\u00DFerhalb des g\u00FCltigen Bereichs";

function complain(what, expected, actual) {
  ++failures;
  WScript.Echo(what + ": expected [" + expected + "], got [" + actual + "]");
}

function hex(number) {
  return (number < 0 ? number + 4294967296 : number).toString(16).toUpperCase();
}

// Expects one of these errors; a description of "" stands for the language's own.
function raises(what, numbers, description, call) {
  ++checks;
  try {
    call();
  } catch (error) {
    if (("," + numbers + ",").indexOf("," + hex(error.number) + ",") < 0)
      complain(what, numbers, hex(error.number) + " " + error.description);
    else if (description !== "" && error.description !== description)
      complain(what, description, error.description);
    return;
  }
  complain(what, numbers, "no error");
}

// Expects no error, and this value with this type.
function got(what, expected, call) {
  ++checks;
  try {
    var actual = call();
    if (actual !== expected)
      complain(what, typeof expected + " " + expected, typeof actual + " " + actual);
  } catch (error) {
    complain(what, expected, hex(error.number) + " " + error.description);
  }
}

var e = new ActiveXObject("KVOPDesignObjects.DTCElement");
var p = new ActiveXObject("KVOPDesignObjects.DTCProductList");
var c = new ActiveXObject("kvopdesignobjects.dtccontact");

// --- unknown names ---

got("an unknown property is read", "undefined", function () { return typeof e.Nix; });
// Wine's engine turns 438 into 80020006 here.
raises("an unknown property is assigned", "800A01B6,80020006", "", function () { e.Nix = 1; });
raises("an unknown method is called", "800A01B6", "", function () { e.Nix(); });
raises("an unknown class", "800A01AD", "", function () {
  return new ActiveXObject("KVOPDesignObjects.DTCNix");
});

// --- invalid values ---

raises("a flag that is a word", "800A000D", kMismatch + ": \"ja\"",
       function () { e.OpeningTagOnly = "ja"; });
raises("a flag that is an object", "800A000D", kMismatch, function () { e.OpeningTagOnly = {}; });
raises("a text that is an array", "800A000D", kMismatch, function () { e.Value = [1, 2]; });
raises("a text that is an object", "800A000D", kMismatch, function () { e.Value = {}; });
raises("an integer that is a word", "800A000D", kMismatch + ": \"drei\"",
       function () { p.DisplayColumns = "drei"; });
raises("a text beyond 32 bits", "800A0006", kOverflow,
       function () { p.DisplayColumns = "3000000000"; });
raises("a number beyond 32 bits", "800A0006", kOverflow,
       function () { p.DisplayColumns = 3000000000; });
raises("no number at all", "800A0006", kOverflow, function () { p.DisplayColumns = NaN; });
raises("an object that is a number", "800A000D", kMismatch, function () { c.Office = 5; });
got("failures changed nothing", "[]0", function () {
  return "[" + e.Value + "]" + p.DisplayColumns;
});

// --- converted values ---

function assigned(object, name, value) {
  return function () {
    object[name] = value;
    return object[name];
  };
}
got("a number with a comma", 2, assigned(p, "DisplayColumns", " 1,5 "));
got("a half is rounded to even", 2, assigned(p, "DisplayColumns", 2.5));
got("the other half", 4, assigned(p, "DisplayColumns", 3.5));
got("a flag as a number", -1, assigned(p, "DisplayColumns", true));
got("null as a number", 0, assigned(p, "DisplayColumns", null));
got("undefined as a number", 0, assigned(p, "DisplayColumns", undefined));
got("a word as a flag", true, assigned(e, "OpeningTagOnly", "TRUE"));
got("a number as a flag", false, assigned(e, "OpeningTagOnly", 0));
got("a number as a text", "1,5", assigned(e, "Value", 1.5));
got("a flag as a text", "True", assigned(e, "Value", true));
got("null as a text", "", assigned(e, "Value", null));

// --- arguments ---

raises("the method with an argument", "8002000E,800A01C2", "",
       function () { return e.GetRuntimeText(1); });
raises("a text with an index", "8002000E,800A01C2", "", function () { return e.Value(1); });

// --- names in any case ---

got("a name in any case", "td", function () {
  e.vALUE = "td";
  return e.VALUE;
});
got("the method in any case", "<kv:element name=\"td\"/>", function () {
  e.BASENAME = "element";
  e.namespace = "kv";
  return e.gETrUNTIMEtEXT();
});

// --- attributes ---

e.Attributes = "a|1||ohne";
raises("an attribute without a value", "800A0009", kIndex + ": \"ohne\"",
       function () { return e.GetRuntimeText(); });
got("its count", 2, function () { return e.AttributesCollection.Count; });
got("an item", "ohne", function () { return e.AttributesCollection.Item(2); });
got("an item by index alone", "a|1", function () { return e.AttributesCollection(1); });
raises("an item after the last", "800A0009", kIndex,
       function () { return e.AttributesCollection.Item(3); });
raises("an unknown member of the collection", "800A01B6", kUnknown + ": Nix",
       function () { return e.AttributesCollection.Nix; });

e.Attributes = "a|1";
e.AttributesCollection.Add("b|2");
got("what is added is in the list", "a|1||b|2", function () { return e.Attributes; });
got("Enumerator", "a|1;b|2;", function () {
  var all = "";
  for (var walk = new Enumerator(e.AttributesCollection); !walk.atEnd(); walk.moveNext())
    all += walk.item() + ";";
  return all;
});
got("an Enumerator that starts over", "a|1", function () {
  var walk = new Enumerator(e.AttributesCollection);
  walk.moveNext();
  walk.moveFirst();
  return walk.item();
});

var other = new ActiveXObject("KVOPDesignObjects.DTCElement");
other.Attributes = "x|1";
e.AttributesCollection = other.AttributesCollection;
got("a shared collection is the same", true, function () {
  return e.AttributesCollection === other.AttributesCollection;
});
other.AttributesCollection.Add("y|2");
got("and grows for both", "<kv:element name=\"td\" x=\"1\" y=\"2\"/>",
    function () { return e.GetRuntimeText(); });
other = null;
CollectGarbage();
got("and outlives the other control", "x|1||y|2", function () { return e.Attributes; });

var own = new ActiveXObject("Scripting.Dictionary");
own.Add("k|5", 0);
e.AttributesCollection = own;
got("a collection of the script's own", "<kv:element name=\"td\" k=\"5\"/>",
    function () { return e.GetRuntimeText(); });
e.AttributesCollection = ["x|1"];
raises("an array of the language is no collection", "800A01B6", kUnknown + ": _NewEnum",
       function () { return e.Attributes; });
e.AttributesCollection = null;
got("without a collection there is an empty one", 0,
    function () { return e.AttributesCollection.Count; });

// --- the host's context object ---

var shop = {name: "Laden", twice: function (number) { return 2 * number; }};
got("no office at first", null, function () { return c.Office; });
got("an object of the script", true, function () {
  c.Office = shop;
  return c.Office === shop;
});
got("its members", "Laden42", function () { return c.Office.name + c.Office.twice(21); });
got("are its own", "Neu", function () {
  c.Office.name = "Neu";
  return shop.name;
});
shop = null;
CollectGarbage();
got("it is kept alive", "Neu", function () { return c.Office.name; });
got("the office is removed", null, assigned(c, "Office", null));

WScript.Echo("JScript: " + checks + " checks, " + failures + " failures");
WScript.Quit(failures === 0 ? 0 : 1);
