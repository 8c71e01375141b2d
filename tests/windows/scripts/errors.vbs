' Tests the errors that scripts receive, and the objects that they may pass.
'   cscript //nologo errors.vbs
' Requires a German user. Umlauts are written as Chr(...), because scripts have no encoding.
On Error Resume Next
Dim failures, checks
failures = 0
checks = 0

Const kVbs = "Microsoft VBScript"  ' errors that the language itself raises
Const kElement = "KVOPDesignObjects.DTCElement"
Const kList = "KVOPDesignObjects.DTCProductList"
Const kContact = "KVOPDesignObjects.DTCContact"
Dim kMismatch, kUnknown, kOverflow, kIndex
kMismatch = "Typen unvertr" & Chr(228) & "glich"
kUnknown = "Objekt unterst" & Chr(252) & "tzt diese Eigenschaft oder Methode nicht"
kOverflow = Chr(220) & "berlauf"
kIndex = "Index au" & Chr(223) & "erhalb des g" & Chr(252) & "ltigen Bereichs"

Sub Complain(what, expected, actual)
  failures = failures + 1
  WScript.Echo what & ": expected [" & expected & "], got [" & actual & "]"
End Sub

Function Same(a, b)
  Same = (StrComp(CStr(a), CStr(b), vbBinaryCompare) = 0)
End Function

' Expects the previous statement's error. The language's own errors have texts of their own.
Sub Raised(what, number, source, description)
  Dim gotNumber, gotSource, gotDescription
  gotNumber = Err.Number
  gotSource = Err.Source
  gotDescription = Err.Description
  Err.Clear
  checks = checks + 1
  If gotNumber <> number Then
    Complain what, number, gotNumber & " " & gotSource & " " & gotDescription
  ElseIf source = kVbs Then
    If Not Same(Left(gotSource, Len(kVbs)), kVbs) Then Complain what & ", source", source, gotSource
  Else
    If Not Same(gotSource, source) Then Complain what & ", source", source, gotSource
    If Not Same(gotDescription, description) Then
      Complain what & ", text", description, gotDescription
    End If
  End If
End Sub

' Expects no error, and this value.
Sub Got(what, expected, actual)
  checks = checks + 1
  If Err.Number <> 0 Then
    Complain what, expected, Err.Number & " " & Err.Source & " " & Err.Description
    Err.Clear
  ElseIf Not Same(expected, actual) Then
    Complain what, expected, actual
  End If
End Sub

Set e = CreateObject("KVOPDesignObjects.DTCElement")
Set p = CreateObject("KVOPDesignObjects.DTCProductList")
Set c = CreateObject("kvopdesignobjects.dtccontact")
Set other = CreateObject("Scripting.Dictionary")
Got "three controls", 0, Err.Number

' --- unknown names ---

x = e.Nix
Raised "an unknown property is read", 438, kVbs, ""
e.Nix = 1
Raised "an unknown property is assigned", 438, kVbs, ""
e.Nix
Raised "an unknown method is called", 438, kVbs, ""
Set e.Office = c
Raised "a property of another class", 438, kVbs, ""
x = c
Raised "no default property", 438, kVbs, ""
e.GetRuntimeText = "x"
Raised "the method is assigned", 438, kVbs, ""
Set x = CreateObject("KVOPDesignObjects.DTCNix")
Raised "an unknown class", 429, kVbs, ""

' --- invalid values ---

e.OpeningTagOnly = "ja"
Raised "a flag that is a word", 13, kElement, kMismatch & ": ""ja"""
e.OpeningTagOnly = other
Raised "a flag that is an object", 13, kElement, kMismatch
Set e.OpeningTagOnly = other
Raised "a flag that is set", 438, kVbs, ""
e.Value = Array(1, 2)
Raised "a text that is an array", 13, kElement, kMismatch
e.Value = other
Raised "a text that is an object", 13, kElement, kMismatch
Set e.Value = other
Raised "a text that is set", 438, kVbs, ""
p.DisplayColumns = "drei"
Raised "an integer that is a word", 13, kList, kMismatch & ": ""drei"""
p.DisplayColumns = "3000000000"
Raised "a text beyond 32 bits", 6, kList, kOverflow
p.DisplayColumns = 3000000000
Raised "a number beyond 32 bits", 6, kList, kOverflow
c.Office = 5
Raised "an object that is a number", 13, kContact, kMismatch
c.Office = "x"
Raised "an object that is a text", 13, kContact, kMismatch & ": ""x"""
e.AttributesCollection = "x"
Raised "a collection that is a text", 13, kElement, kMismatch & ": ""x"""
Got "failures changed nothing", "[]0", "[" & e.Value & "]" & p.DisplayColumns

' --- converted values ---

p.DisplayColumns = " 1,5 "
Got "a number with a comma", 2, p.DisplayColumns
p.DisplayColumns = 2.5
Got "a half is rounded to even", 2, p.DisplayColumns
p.DisplayColumns = 3.5
Got "the other half", 4, p.DisplayColumns
p.DisplayColumns = True
Got "a flag as a number", -1, p.DisplayColumns
p.DisplayColumns = "&HFF"
Got "hexadecimal digits", 255, p.DisplayColumns
p.DisplayColumns = Null
Got "null as a number", 0, p.DisplayColumns
e.OpeningTagOnly = "TRUE"
Got "a word as a flag", CStr(True), CStr(e.OpeningTagOnly)
e.OpeningTagOnly = 0
Got "a number as a flag", CStr(False), CStr(e.OpeningTagOnly)
e.OpeningTagOnly = Empty
Got "an empty value as a flag", CStr(False), CStr(e.OpeningTagOnly)
e.Value = 1.5
Got "a number as a text", "1,5", e.Value
e.Value = True
Got "a flag as a text", "True", e.Value
e.Value = CCur(1.25)
Got "a currency as a text", "1,25", e.Value
e.Value = CDate("24.12.2020")
Got "a date as a text", "24.12.2020", e.Value
e.Value = Empty
Got "an empty value as a text", "", e.Value

' --- arguments ---

x = e.GetRuntimeText(1)
Raised "the method with an argument", 450, kVbs, ""
x = e.Value(1)
Raised "a text with an index", 450, kVbs, ""
e.Value(1) = "x"
Raised "a text assigned by index", 450, kVbs, ""
x = e.AttributesCollection(1, 2)
Raised "a collection with two indices", 450, kVbs, ""

' --- names in any case ---

e.vALUE = "td"
Got "a name in any case", "td", e.VALUE
e.BASENAME = "element"
e.namespace = "kv"
Got "the method in any case", "<kv:element name=""td""/>", e.gETrUNTIMEtEXT

' --- attributes ---

e.Attributes = "a|1||ohne"
x = e.GetRuntimeText
Raised "an attribute without a value", 9, kElement, kIndex & ": ""ohne"""
Got "its count", 2, e.AttributesCollection.Count
Got "an item", "ohne", e.AttributesCollection.Item(2)
Got "an item by index alone", "a|1", e.AttributesCollection(1)
x = e.AttributesCollection.Item(3)
Raised "an item after the last", 9, "KVOPDesignObjects", kIndex
x = e.AttributesCollection(0)
Raised "an item before the first", 9, kElement, kIndex
x = e.AttributesCollection.Item("x")
Raised "an item by name", 13, "KVOPDesignObjects", kMismatch & ": ""x"""
x = e.AttributesCollection.Nix
Raised "an unknown member of the collection", 438, "KVOPDesignObjects", kUnknown & ": Nix"
e.AttributesCollection.Count = 1
Raised "the count is assigned", 438, "KVOPDesignObjects", kUnknown & ": Count"

e.Attributes = "a|1"
e.AttributesCollection.Add "b|2"
Got "what is added is in the list", "a|1||b|2", e.Attributes
all = ""
For Each x In e.AttributesCollection
  all = all & x & ";"
Next
Got "For Each", "a|1;b|2;", all

Set other = CreateObject("KVOPDesignObjects.DTCElement")
other.Attributes = "x|1"
Set e.AttributesCollection = other.AttributesCollection
Got "a shared collection is the same", CStr(True), _
    CStr(e.AttributesCollection Is other.AttributesCollection)
other.AttributesCollection.Add "y|2"
Got "and grows for both", "<kv:element name=""td"" x=""1"" y=""2""/>", e.GetRuntimeText
Set other = Nothing
Got "and outlives the other control", "x|1||y|2", e.Attributes

' Any collection of texts works; a dictionary enumerates its keys.
Set own = CreateObject("Scripting.Dictionary")
own.Add "k|5", 0
Set e.AttributesCollection = own
Got "a collection of the script's own", "<kv:element name=""td"" k=""5""/>", e.GetRuntimeText
own.Add "l|6", 0
Got "stays the script's", "k|5||l|6", e.Attributes
Got "and is returned itself", CStr(True), CStr(e.AttributesCollection Is own)

Class Shop
  Public Name
End Class
Set s = New Shop
Set e.AttributesCollection = s
x = e.Attributes
Raised "an object that is no collection", 438, kElement, kUnknown & ": _NewEnum"
Set e.AttributesCollection = Nothing
Got "without a collection there is an empty one", 0, e.AttributesCollection.Count

' --- the host's context object ---

Got "no office at first", CStr(True), CStr(c.Office Is Nothing)
s.Name = "Laden"
Set c.Office = s
Got "an instance of a script's class", CStr(True), CStr(c.Office Is s)
Got "its members", "Laden", c.Office.Name
c.Office.Name = "Neu"
Got "are its own", "Neu", s.Name
Set s = Nothing
Got "it is kept alive", "Neu", c.Office.Name
c.Office = own
Got "an assignment without Set", CStr(True), CStr(c.Office Is own)
Set c.Office = e
Got "one control as the office of another", CStr(True), CStr(c.Office Is e)
Set c.Office = Nothing
Got "the office is removed", CStr(True), CStr(c.Office Is Nothing)

' --- cached lists ---

p.CacheObject = True
first = p.GetRuntimeText
Got "an id for the cache", CStr(True), CStr(HasId(first))
Got "a new one with every call", CStr(False), CStr(Same(first, p.GetRuntimeText))

Function HasId(text)
  Dim pattern
  Set pattern = New RegExp
  pattern.Pattern = " in-cache=""\{[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}\}""/>$"
  HasId = pattern.Test(text)
End Function

' A check whose value raises an error is skipped, so this counts the checks.
Dim sites
sites = 0
Set files = CreateObject("Scripting.FileSystemObject")
For Each line In Split(files.OpenTextFile(WScript.ScriptFullName).ReadAll, vbLf)
  If Left(line, 4) = "Got " Or Left(line, 7) = "Raised " Then sites = sites + 1
Next
If sites = 0 Or checks <> sites Then Complain "number of checks", sites, checks

WScript.Echo "VBScript: " & checks & " checks, " & failures & " failures"
If failures > 0 Then WScript.Quit 1
