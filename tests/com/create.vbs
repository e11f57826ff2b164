' Says whether the class can be made.
On Error Resume Next
Dim tremvik
Set tremvik = CreateObject("DllTremvik.Tremvik")
If Err.Number = 0 Then WScript.Echo "CREATED" Else WScript.Echo "error " & Err.Number
