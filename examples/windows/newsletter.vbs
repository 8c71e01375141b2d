' Writes a newsletter from a script: creates each control by its ProgID, sets its properties and
' writes its runtime text in its place. Run it with
'   cscript //nologo newsletter.vbs > newsletter.html
' after registering the component (regsvr32 KVOPDesignObjects.dll).
Option Explicit

' A new control is empty. In a page, loading sets its namespace and name; a script sets them itself.
Function NewControl(className, basename)
  Set NewControl = CreateObject("KVOPDesignObjects." & className)
  NewControl.Namespace = "kv"
  NewControl.basename = basename
End Function

Dim salutation, total, cell, list, link, cancel, counter

' Different text for readers with and without a name. The branches are plain HTML.
Set salutation = NewControl("DTCIf", "if")
salutation.DisplayValue = "Anrede"
salutation.Test = "%#customer.LastName#!=''%"
salutation.OnTrue = "<p>Guten Tag, Herr oder Frau #customer.LastName#</p>"
salutation.OnFalse = "<p>Guten Tag</p>"

' A formatted price.
Set total = NewControl("DTCPrint", "print")
total.Value = "#order.total#"
total.Format = "#,##0.00"

' An element with expressions as attributes, given as one text or as a collection of texts.
Set cell = NewControl("DTCElement", "element")
cell.Value = "td"
cell.Attributes = "align|center"
cell.AttributesCollection.Add "bgcolor|#shop.color#"
cell.HTMLContent = "Summe"

' Products in three columns. Flags and numbers may keep their types.
Set list = NewControl("DTCProductList", "products")
list.DisplayColumns = 3
list.DisplayDesc2 = True
list.DisplayPrice = True
list.DisplayThumb = "left"
list.DisplayAsLink = True
list.SelectedProducts = "1001,1002"
list.Headline = "Neu & g" & Chr(252) & "nstig"
list.DefaultExtension = "htm"

Set link = NewControl("DTCClicktracker", "click")
link.Href = "angebote.html?seite=1&von=news"
link.ClickId = "juni"
link.HTMLContent = "Alle Angebote"

Set cancel = NewControl("DTCUnsubscriber", "unsubscribe")
cancel.Recipient = "abmelden@shop.example"
cancel.Site = "http://shop.example/"
cancel.HTMLContent = "Abmelden"

Set counter = NewControl("DTCViewtracker", "view")

WScript.Echo "<!DOCTYPE html>"
WScript.Echo "<html><body>"
WScript.Echo salutation.GetRuntimeText
WScript.Echo "<p>Bisher gekauft: " & total.GetRuntimeText & "</p>"
WScript.Echo "<table><tr>" & cell.GetRuntimeText & "</tr></table>"
WScript.Echo list.GetRuntimeText
WScript.Echo "<p>" & link.GetRuntimeText & " | " & cancel.GetRuntimeText & "</p>"
WScript.Echo counter.GetRuntimeText

' Errors have a number, a source and a German description.
On Error Resume Next
list.DisplayColumns = "drei"
If Err.Number <> 0 Then
  WScript.Echo "<!-- " & Err.Number & ", " & Err.Source & ": " & Err.Description & " -->"
End If
On Error Goto 0

WScript.Echo "</body></html>"
