// Tests the golden pairs through automation, as golden.vbs does, but finds members by name.
//   cscript //nologo golden.js KEYS
// KEYS is the file from kvo_com_sources with the key of each property.
var fso = new ActiveXObject("Scripting.FileSystemObject");
var here = fso.GetParentFolderName(WScript.ScriptFullName);
var golden = fso.GetParentFolderName(fso.GetParentFolderName(here)) + "\\golden";
var keys = WScript.Arguments(0);
var failures = 0;
WScript.Quit(compareAll());

function compareAll() {
  var classes = readClasses();
  var rules = readRules(classes);
  var unreachable = readUnreachable();
  var checked = {}, found = {}, reached = 0, name, i;
  for (name in classes) {
    var pairs = readPairs(name);
    for (i = 0; i < pairs.length; ++i) {
      var pair = pairs[i];
      found[pair.name] = true;
      if (unreachable[pair.name]) {
        if (compare(classes[name], rules, pair, false))
          fail(pair.name, "is listed in unreachable.txt", "but the runtime text matches");
        continue;
      }
      compare(classes[name], rules, pair, true);
      checked[name] = true;
      ++reached;
    }
  }
  for (name in classes)
    if (!checked[name]) fail(name, "at least one pair that properties reach", "none");
  for (name in unreachable)
    if (!found[name]) fail(name, "a golden pair, as unreachable.txt says", "there is none");
  WScript.Echo("JScript: " + reached + " of " + count(found) + " golden pairs compared, " +
               failures + " failures");
  return failures === 0 ? 0 : 1;
}

// --- one pair ---

// Returns whether the runtime text is correct. Reports errors only if `loud`.
function compare(contract, rules, pair, loud) {
  var control = new ActiveXObject("KVOPDesignObjects." + contract.name);
  var bag = pair.bag, stored = pair.stored, key, i;
  for (key in bag)
    if (!contract.keys[key]) fail(pair.name, "a key of the class", key);
  for (i = 0; i < contract.keyOrder.length; ++i) {
    key = contract.keyOrder[i];
    var rule = rules[contract.name + " " + key];
    if (rule.property === "-") continue;
    var defaults = contract.keys[key];
    var value = own(bag, key) ? bag[key] : defaults.read;
    var assigned = assignedValue(rule.storedAs, value, defaults.read);
    // Uses names in any case.
    control[rule.property.toUpperCase()] = assigned;
    if (!loud) continue;
    // The property returns the assigned value, or what its setter made of it and stores.
    var expected = assigned;
    if (rule.storedAs === "as-is" && stored)
      expected = own(stored, key) ? stored[key] : defaults.write;
    checkReading(control, rule.property, contract.properties[rule.property], expected,
                 pair.name);
  }
  var actual = control.GetRuntimeText();
  if (loud && actual !== pair.runtime) fail(pair.name, pair.runtime, actual);
  return actual === pair.runtime;
}

function checkReading(control, property, kind, expected, pair) {
  if (kind === "flag") expected = flagOf(expected);
  if (kind === "integer") expected = Number(expected);
  var actual = control[property.toLowerCase()];
  if (actual !== expected)
    fail(pair + " " + property, typeof expected + " " + expected, typeof actual + " " + actual);
}

// Returns the flag that an assigned value becomes.
function flagOf(value) {
  if (typeof value === "boolean") return value;
  if (/^true$/i.test(value)) return true;
  if (/^false$/i.test(value)) return false;
  return Number(value) !== 0;
}

// Returns the value to assign for a stored text.
function assignedValue(storedAs, value, readDefault) {
  if (storedAs === "as-is") return value;
  if (storedAs === "tokens") return decodeTokens(value);
  // Any text except the opposite word leaves a flag at its default.
  var words = storedAs.split("/");
  return readDefault === words[0] ? value !== words[1] : value === words[0];
}

function decodeTokens(value) {
  return value.replace(/kv:@lt;/g, "<").replace(/kv:@gt;/g, ">").replace(/kv:@quot;/g, "\"")
              .replace(/kv:@amp;/g, "&").replace(/kv:@br;/g, "\r\n");
}

// --- files ---

// Reads the pairs of a control; tests/core/Golden.h describes the format.
function readPairs(control) {
  var pairs = [], pair = null, part = "", lines = linesOf(golden + "\\" + control + ".txt");
  for (var i = 0; i < lines.length; ++i) {
    var line = lines[i], mark = line.substr(0, 4);
    if (line === "") continue;
    if (mark === "=== ") {
      pair = {name: control + "/" + line.substr(4), bag: {}, runtime: "", stored: null};
      pairs.push(pair);
      part = "bag";
    } else if (mark === "--- ") {
      part = line.substr(4);
      if (part === "stored") pair.stored = {};
    } else if (part === "runtime") {
      pair.runtime = unescapeText(line);
    } else {
      var equals = line.indexOf("=");
      pair[part][line.substr(0, equals)] = unescapeText(line.substr(equals + 1));
    }
  }
  return pairs;
}

function readClasses() {
  var classes = {}, current = null, section = "", lines = linesOf(golden + "\\classes.txt");
  for (var i = 0; i < lines.length; ++i) {
    var line = lines[i];
    if (line === "") {
      section = "";
    } else if (line.charAt(0) !== " ") {
      current = {name: line.split(" ")[0], properties: {}, keys: {}, keyOrder: []};
      classes[current.name] = current;
    } else if (line.substr(0, 4) !== "    ") {
      section = line.split(":")[0];
    } else if (section === "  properties") {
      var words = wordsOf(line);
      current.properties[words[1]] = words[2];
    } else if (section === "  keys") {
      var quoted = line.split("\"");
      var key = wordsOf(quoted[0])[0];
      current.keys[key] = {read: quoted[1], write: quoted.length > 3 ? quoted[3] : ""};
      current.keyOrder.push(key);
    }
  }
  return classes;
}

function readRules(classes) {
  var rules = {}, entries = entriesOf(keys), name, key;
  for (var i = 0; i < entries.length; ++i) {
    var words = wordsOf(entries[i]);
    var contract = classes[words[0]];
    if (!contract.keys[words[1]]) fail(keys, "a key of " + words[0], words[1]);
    if (words[2] !== "-" && !contract.properties[words[2]])
      fail(keys, "a property of " + words[0], words[2]);
    rules[words[0] + " " + words[1]] = {property: words[2], storedAs: words[3]};
  }
  for (name in classes)
    for (key in classes[name].keys)
      if (!rules[name + " " + key]) {
        fail(keys, "a line for " + name + " " + key, "none");
        rules[name + " " + key] = {property: "-", storedAs: "as-is"};
      }
  return rules;
}

function readUnreachable() {
  var pairs = {}, entries = entriesOf(here + "\\unreachable.txt");
  for (var i = 0; i < entries.length; ++i) pairs[entries[i].split(":")[0]] = true;
  return pairs;
}

function unescapeText(text) {
  var plain = "";
  for (var i = 0; i < text.length; ++i) {
    var c = text.charAt(i);
    if (c === "\\" && i + 1 < text.length) {
      c = text.charAt(++i);
      c = c === "r" ? "\r" : c === "n" ? "\n" : c === "t" ? "\t" : c === "s" ? " " : c;
    }
    plain += c;
  }
  return plain;
}

function wordsOf(line) {
  return line.replace(/^ +/, "").replace(/ +$/, "").split(/ +/);
}

function linesOf(path) {
  return fromUtf8(readBytes(path)).replace(/\r/g, "").split("\n");
}

// Returns the lines of a list without comments and blank lines.
function entriesOf(path) {
  var lines = linesOf(path), entries = [];
  for (var i = 0; i < lines.length; ++i)
    if (lines[i] !== "" && lines[i].charAt(0) !== "#") entries.push(lines[i]);
  return entries;
}

// Reads one character per byte, in the system's code page (1252).
function readBytes(path) {
  var file = fso.OpenTextFile(path);
  var bytes = file.AtEndOfStream ? "" : file.ReadAll();
  file.Close();
  return bytes;
}

function fromUtf8(bytes) {
  // The characters of code page 1252 from 0x80 to 0x9F.
  var upper = "\u20AC\x81\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\x8D" +
              "\u017D\x8F\x90\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161\u203A" +
              "\u0153\x9D\u017E\u0178";
  var text = "", i = 0;
  function next() {
    var c = bytes.charAt(i++), at = upper.indexOf(c);
    return at < 0 ? c.charCodeAt(0) : 0x80 + at;
  }
  while (i < bytes.length) {
    var first = next();
    if (first >= 0xF0) throw new Error("a character beyond the first plane");
    var more = first >= 0xE0 ? 2 : first >= 0x80 ? 1 : 0;
    var code = more === 2 ? first & 0x0F : more === 1 ? first & 0x1F : first;
    for (; more > 0; --more) code = code * 64 + (next() & 0x3F);
    text += String.fromCharCode(code);
  }
  return text;
}

// --- failures ---

function own(object, name) {
  return Object.prototype.hasOwnProperty.call(object, name);
}

function count(object) {
  var number = 0;
  for (var name in object) ++number;
  return number;
}

function fail(where, expected, actual) {
  ++failures;
  WScript.Echo(where + ": expected [" + shown(expected) + "], got [" + shown(actual) + "]");
}

function shown(value) {
  return String(value).replace(/\r/g, "\\r").replace(/\n/g, "\\n").replace(/\t/g, "\\t");
}
