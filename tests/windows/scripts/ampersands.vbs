' Tests the escaping of ampersands with an independent regular expression engine. Compares the
' definition, which replaces the pattern until it no longer matches, with the value attribute of
' DTCPrint, for every text of up to six characters from the alphabet and some longer ones.
'   cscript //nologo ampersands.vbs [LENGTH]
' "." does not match a line feed, which makes no difference here: both (.*?) may be empty, and the
' character after the "&" is matched by a class that includes line breaks.
Option Explicit

Dim definition, control, failures, compared, escaped, longest
Set definition = New RegExp
definition.Global = True
definition.MultiLine = True
definition.IgnoreCase = True
definition.Pattern = "(.*?)(&)([^a]|a[^m]|am[^p]|amp[^;])(.*?)"

Set control = CreateObject("KVOPDesignObjects.DTCPrint")
control.Namespace = "kv"
control.basename = "print"

failures = 0
compared = 0
escaped = 0
longest = 6
If WScript.Arguments.Count > 0 Then longest = CLng(WScript.Arguments(0))

Dim letters
letters = Array("&", "a", "m", "p", ";", "x")
Extend "", longest

Dim text
For Each text In Array("&AMP;", "&Amp;&aMP;", "&A", "&aM&AMP", "&amp", "a&lt;b", _
    vbCrLf & "&" & vbCrLf, "&" & vbLf & "&" & vbCr & "&", "am" & vbLf & "p&am" & vbLf & "p;", _
    "&" & Chr(228) & "&" & Chr(220), _
    "&a" & vbCrLf & "mp;&am" & vbCr & "p;", " & ", vbTab & "&" & vbTab, _
    "seite.html?a=1&b=2&amp;c=3&amp=4&am;p&&&", String(200, "&"), _
    String(50, "&") & "amp;" & String(51, "&a"), _
    Repeated("x&y&amp;" & vbCrLf, 100), Repeated("&amp", 60), Repeated("&am&amp;", 60))
  Judge text
Next

If escaped = 0 Then Complain "texts with something to escape", "some", "none"
WScript.Echo "VBScript.RegExp: " & compared & " texts, " & escaped & " of them escaped, " & _
             failures & " failures"
If failures > 0 Then WScript.Quit 1

Sub Extend(text, room)
  Dim letter
  Judge text
  If room > 0 Then
    For Each letter In letters
      Extend text & letter, room - 1
    Next
  End If
End Sub

Sub Judge(text)
  Dim expected, actual
  expected = text
  Do While definition.Test(expected)
    expected = definition.Replace(expected, "$1&amp;$3$4")
  Loop
  control.Value = text
  actual = control.GetRuntimeText
  compared = compared + 1
  If StrComp(expected, text, vbBinaryCompare) <> 0 Then escaped = escaped + 1
  ' An empty value emits nothing.
  If text <> "" Then expected = "<kv:print value=""" & expected & """/>"
  If StrComp(expected, actual, vbBinaryCompare) <> 0 Then Complain text, expected, actual
End Sub

Function Repeated(text, times)
  Dim i, all
  all = ""
  For i = 1 To times
    all = all & text
  Next
  Repeated = all
End Function

Sub Complain(what, expected, actual)
  failures = failures + 1
  If failures <= 20 Then WScript.Echo what & ": expected [" & expected & "], got [" & actual & "]"
End Sub
