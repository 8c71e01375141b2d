' Tests the golden pairs through automation: assigns every property to reach the state after loading
' the pair's bag, reads it back, and compares the runtime text byte for byte.
'   cscript //nologo golden.vbs KEYS
' KEYS is the file from kvo_com_sources with the key of each property.
' VBScript cannot access a member whose name comes from a file. So the script first writes a copy of
' itself to the temporary folder, followed by accessors for all properties in
' tests/golden/classes.txt, and runs that. The accessors use both upper and lower case, which
' scripts may do.
Option Explicit

Const kTemporaryFolder = 2
Dim fso, failures
Set fso = CreateObject("Scripting.FileSystemObject")
failures = 0

If WScript.Arguments.Count = 1 Then
  WScript.Quit RunWithAccessors(WScript.Arguments(0))
Else
  WScript.Quit CompareAll(WScript.Arguments(0), WScript.Arguments(1), WScript.Arguments(2))
End If

' --- the two runs ---

Function RunWithAccessors(keys)
  Dim here, golden, base, file, child, command
  here = fso.GetParentFolderName(WScript.ScriptFullName)
  golden = fso.GetParentFolderName(fso.GetParentFolderName(here)) & "\golden"
  base = fso.GetSpecialFolder(kTemporaryFolder).Path & "\" & fso.GetTempName()
  Set file = fso.CreateTextFile(base & ".vbs", True)
  file.Write ReadBytes(WScript.ScriptFullName) & Accessors(golden)
  file.Close
  command = "cmd /c cscript //nologo """ & base & ".vbs"" """ & golden & """ """ & here & _
            """ """ & keys & """ > """ & base & ".txt"" 2>&1"
  RunWithAccessors = CreateObject("WScript.Shell").Run(command, 0, True)
  child = ReadBytes(base & ".txt")
  If child = "" Then
    WScript.Echo "The script with the accessors printed nothing."
    RunWithAccessors = 1
  Else
    WScript.Echo Left(child, Len(child) - 2)
  End If
  fso.DeleteFile base & ".vbs"
  fso.DeleteFile base & ".txt"
End Function

Function Accessors(golden)
  Dim classes, className, properties, property, name, known, lets, gets
  Set classes = ReadClasses(golden)
  Set known = CreateObject("Scripting.Dictionary")
  For Each className In classes.Keys
    Set properties = classes(className).Properties
    For Each property In properties.Keys
      name = LCase(property)
      If Not known.Exists(name) And properties.Item(property) <> "object" Then
        known.Add name, True
        lets = lets & "Case """ & name & """" & vbLf & "o." & UCase(property) & " = v" & vbLf
        gets = gets & "Case """ & name & """" & vbLf & "v = o." & name & vbLf
      End If
    Next
  Next
  Accessors = vbLf & "Sub LetProperty(o, name, v)" & vbLf & "Select Case LCase(name)" & vbLf & _
              lets & "End Select" & vbLf & "End Sub" & vbLf & _
              "Sub GetProperty(o, name, v)" & vbLf & "Select Case LCase(name)" & vbLf & gets & _
              "End Select" & vbLf & "End Sub" & vbLf
End Function

Function CompareAll(golden, here, keys)
  Dim classes, className, rules, unreachable, pair, checked, pairs, reached, key
  Set classes = ReadClasses(golden)
  Set rules = ReadRules(keys, classes)
  Set unreachable = ReadUnreachable(here)
  pairs = 0
  reached = 0
  For Each className In classes.Keys
    checked = 0
    For Each pair In ReadPairs(golden, className).Items
      pairs = pairs + 1
      If unreachable.Exists(pair.Name) Then
        If Compare(classes(className), rules, pair, False) Then
          Fail pair.Name, "is listed in unreachable.txt", "but the runtime text matches"
        End If
        unreachable.Remove pair.Name
      Else
        Compare classes(className), rules, pair, True
        checked = checked + 1
      End If
    Next
    reached = reached + checked
    If checked = 0 Then Fail className, "at least one pair that properties reach", "none"
  Next
  For Each key In unreachable.Keys
    Fail key, "a golden pair, as unreachable.txt says", "there is none"
  Next
  WScript.Echo "VBScript: " & reached & " of " & pairs & " golden pairs compared, " & _
               failures & " failures"
  If failures = 0 Then CompareAll = 0 Else CompareAll = 1
End Function

' --- one pair ---

' Returns whether the runtime text is correct. Reports errors only if `loud`.
Function Compare(contract, rules, pair, loud)
  Dim control, key, value, property, expected, actual, assigned
  Set control = CreateObject("KVOPDesignObjects." & contract.Name)
  For Each key In pair.Bag.Keys
    If Not contract.ReadDefaults.Exists(key) Then Fail pair.Name, "a key of the class", key
  Next
  For Each key In contract.ReadDefaults.Keys
    value = contract.ReadDefaults.Item(key)
    If pair.Bag.Exists(key) Then value = pair.Bag.Item(key)
    Set property = PropertyOf(contract, rules, key)
    If property.Name <> "-" Then
      assigned = property.Assigned(value, contract.ReadDefaults.Item(key))
      LetProperty control, property.Name, assigned
      If loud Then
        ' The property returns the assigned value, or what its setter made of it and stores.
        expected = assigned
        If property.StoredAs = "as-is" And Not pair.Stored Is Nothing Then
          expected = contract.WriteDefaults.Item(key)
          If pair.Stored.Exists(key) Then expected = pair.Stored.Item(key)
        End If
        CheckReading control, property, expected, pair.Name
      End If
    End If
  Next
  actual = control.GetRuntimeText()
  Compare = Same(pair.Runtime, actual)
  If loud And Not Compare Then Fail pair.Name, pair.Runtime, actual
End Function

Sub CheckReading(control, property, expected, pair)
  Dim actual, wanted
  GetProperty control, property.Name, actual
  Select Case property.Kind
    Case "flag"
      wanted = "Boolean"
      expected = FlagOf(expected)
    Case "integer"
      wanted = "Long"
      expected = CLng(expected)
    Case Else
      wanted = "String"
  End Select
  If TypeName(actual) <> wanted Then
    Fail pair & " " & property.Name, wanted, TypeName(actual)
  ElseIf Not Same(CStr(expected), CStr(actual)) Then
    Fail pair & " " & property.Name, expected, actual
  End If
End Sub

' Returns the flag that an assigned value becomes.
Function FlagOf(value)
  If VarType(value) = vbBoolean Then
    FlagOf = value
  ElseIf LCase(value) = "true" Then
    FlagOf = True
  ElseIf LCase(value) = "false" Then
    FlagOf = False
  Else
    FlagOf = (CLng(value) <> 0)
  End If
End Function

Class BoundProperty
  Public Name
  Public Kind
  Public StoredAs

  ' Returns the value to assign for a stored text.
  Public Function Assigned(value, readDefault)
    Dim words
    Select Case StoredAs
      Case "as-is"
        Assigned = value
      Case "tokens"
        Assigned = DecodeTokens(value)
      Case Else
        ' Any text except the opposite word leaves a flag at its default.
        words = Split(StoredAs, "/")
        Assigned = (value = words(0))
        If readDefault = words(0) Then Assigned = (value <> words(1))
    End Select
  End Function
End Class

Function PropertyOf(contract, rules, key)
  Dim bound, rule
  rule = rules(contract.Name & " " & key)
  Set bound = New BoundProperty
  bound.Name = rule(0)
  bound.StoredAs = rule(1)
  If bound.Name <> "-" Then bound.Kind = contract.Properties.Item(bound.Name)
  Set PropertyOf = bound
End Function

Function DecodeTokens(value)
  Dim text
  text = Replace(value, "kv:@lt;", "<")
  text = Replace(text, "kv:@gt;", ">")
  text = Replace(text, "kv:@quot;", """")
  text = Replace(text, "kv:@amp;", "&")
  DecodeTokens = Replace(text, "kv:@br;", vbCrLf)
End Function

' --- files ---

Class Contract
  Public Name
  Public Properties     ' name -> type, in interface order
  Public ReadDefaults   ' key -> text, in stored order
  Public WriteDefaults  ' key -> text
End Class

Function ReadClasses(golden)
  Dim classes, line, section, words, quoted, current
  Set classes = CreateObject("Scripting.Dictionary")
  For Each line In LinesOf(golden & "\classes.txt")
    If line = "" Then
      section = ""
    ElseIf Left(line, 1) <> " " Then
      Set current = New Contract
      current.Name = FirstOf(line, " ")
      Set current.Properties = CreateObject("Scripting.Dictionary")
      Set current.ReadDefaults = CreateObject("Scripting.Dictionary")
      Set current.WriteDefaults = CreateObject("Scripting.Dictionary")
      classes.Add current.Name, current
    ElseIf Left(line, 4) <> "    " Then
      section = FirstOf(Trim(line), ":")
    ElseIf section = "properties" Then
      words = WordsOf(line)
      current.Properties.Add words(1), words(2)
    ElseIf section = "keys" Then
      quoted = Split(line, """")
      current.ReadDefaults.Add Trim(quoted(0)), quoted(1)
      If UBound(quoted) < 3 Then
        current.WriteDefaults.Add Trim(quoted(0)), ""
      Else
        current.WriteDefaults.Add Trim(quoted(0)), quoted(3)
      End If
    End If
  Next
  Set ReadClasses = classes
End Function

Function ReadRules(keys, classes)
  Dim rules, line, words, contract
  Set rules = CreateObject("Scripting.Dictionary")
  For Each line In EntriesOf(keys)
    words = WordsOf(line)
    Set contract = classes(words(0))
    If Not contract.ReadDefaults.Exists(words(1)) Then
      Fail keys, "a key of " & words(0), words(1)
    End If
    If words(2) <> "-" And Not contract.Properties.Exists(words(2)) Then
      Fail keys, "a property of " & words(0), words(2)
    End If
    rules.Add words(0) & " " & words(1), Array(words(2), words(3))
  Next
  For Each contract In classes.Items
    For Each line In contract.ReadDefaults.Keys
      If Not rules.Exists(contract.Name & " " & line) Then
        Fail keys, "a line for " & contract.Name & " " & line, "none"
        rules.Add contract.Name & " " & line, Array("-", "as-is")
      End If
    Next
  Next
  Set ReadRules = rules
End Function

Function ReadUnreachable(here)
  Dim line, pairs
  Set pairs = CreateObject("Scripting.Dictionary")
  For Each line In EntriesOf(here & "\unreachable.txt")
    pairs.Add FirstOf(line, ":"), True
  Next
  Set ReadUnreachable = pairs
End Function

Class GoldenPair
  Public Name     ' "CLASS/CASE"
  Public Bag      ' key -> text
  Public Runtime
  Public Stored   ' like Bag, or Nothing
End Class

' Reads the pairs of a class, by number; tests/core/Golden.h describes the format.
Function ReadPairs(golden, className)
  Dim pairs, pair, part, line
  Set pairs = CreateObject("Scripting.Dictionary")
  For Each line In LinesOf(golden & "\" & className & ".txt")
    If Left(line, 4) = "=== " Then
      Set pair = New GoldenPair
      pair.Name = className & "/" & Mid(line, 5)
      Set pair.Bag = CreateObject("Scripting.Dictionary")
      Set pair.Stored = Nothing
      pairs.Add pairs.Count, pair
      Set part = pair.Bag
    ElseIf line = "--- runtime" Then
      Set part = Nothing
    ElseIf line = "--- stored" Then
      Set pair.Stored = CreateObject("Scripting.Dictionary")
      Set part = pair.Stored
    ElseIf line <> "" Then
      If part Is Nothing Then
        pair.Runtime = Unescape(line)
      Else
        part.Add FirstOf(line, "="), Unescape(Mid(line, InStr(line, "=") + 1))
      End If
    End If
  Next
  Set ReadPairs = pairs
End Function

Function Unescape(text)
  Dim i, c, plain
  plain = ""
  i = 1
  Do While i <= Len(text)
    c = Mid(text, i, 1)
    If c = "\" And i < Len(text) Then
      i = i + 1
      c = Mid(text, i, 1)
      If c = "r" Then c = vbCr
      If c = "n" Then c = vbLf
      If c = "t" Then c = vbTab
      If c = "s" Then c = " "
    End If
    plain = plain & c
    i = i + 1
  Loop
  Unescape = plain
End Function

Function WordsOf(line)
  Dim text
  text = Trim(line)
  Do While InStr(text, "  ") > 0
    text = Replace(text, "  ", " ")
  Loop
  WordsOf = Split(text, " ")
End Function

Function FirstOf(line, separator)
  FirstOf = line
  If InStr(line, separator) > 0 Then FirstOf = Left(line, InStr(line, separator) - 1)
End Function

Function LinesOf(path)
  LinesOf = Split(Replace(FromUtf8(ReadBytes(path)), vbCr, ""), vbLf)
End Function

' Returns the lines of a list without comments and blank lines.
Function EntriesOf(path)
  Dim entries, line
  Set entries = CreateObject("Scripting.Dictionary")
  For Each line In LinesOf(path)
    If line <> "" And Left(line, 1) <> "#" Then entries.Add line, True
  Next
  EntriesOf = entries.Keys
End Function

' Reads one character per byte, in the system's code page (1252).
Function ReadBytes(path)
  Dim file
  Set file = fso.OpenTextFile(path)
  If file.AtEndOfStream Then ReadBytes = "" Else ReadBytes = file.ReadAll
  file.Close
End Function

Function FromUtf8(bytes)
  Dim i, first, code, more, text
  text = ""
  i = 1
  Do While i <= Len(bytes)
    first = Asc(Mid(bytes, i, 1))
    If first < &H80 Then
      text = text & Mid(bytes, i, 1)
    Else
      If first >= &HF0 Then
        Err.Raise 5, , "a character beyond the first plane"
      ElseIf first >= &HE0 Then
        code = first And &H0F
        more = 2
      Else
        code = first And &H1F
        more = 1
      End If
      For more = more To 1 Step -1
        i = i + 1
        code = code * 64 + (Asc(Mid(bytes, i, 1)) And &H3F)
      Next
      ' In this range, the code page and Unicode agree; Chr is available where ChrW is not.
      If code >= &HA0 And code <= &HFF Then text = text & Chr(code) Else text = text & ChrW(code)
    End If
    i = i + 1
  Loop
  FromUtf8 = text
End Function

' --- failures ---

' Compares character by character, because "=" treats letters as equal that the language sorts
' alike.
Function Same(a, b)
  Same = (StrComp(a, b, vbBinaryCompare) = 0)
End Function

Sub Fail(where, expected, actual)
  failures = failures + 1
  WScript.Echo where & ": expected [" & Shown(expected) & "], got [" & Shown(actual) & "]"
End Sub

Function Shown(value)
  Shown = Replace(Replace(Replace(CStr(value), vbCr, "\r"), vbLf, "\n"), vbTab, "\t")
End Function
