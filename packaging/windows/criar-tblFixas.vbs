' Makes tblFixas.fix in the desktop database engine's own format from the CSV files of the reference tables and
' the tables.json beside them, through that engine:
'
'   cscript //nologo criar-tblFixas.vbs PASTA ARQUIVO
'
' Ends with 0 (made), 1 (it could not be made) or 2 (usage).
Option Explicit
Const adTypeText = 2
Const dbLangGeneral = ";LANGID=0x0409;CP=1252;COUNTRY=0"
Const dbVersion40 = 64
Const LONGEST_TEXT = 255

Dim folder, file, database, tables, table
If WScript.Arguments.Count <> 2 Then
  WScript.Echo "Uso: cscript //nologo criar-tblFixas.vbs PASTA ARQUIVO"
  WScript.Quit 2
End If
folder = WScript.Arguments(0)
file = WScript.Arguments(1)
If CreateObject("Scripting.FileSystemObject").FileExists(file) Then
  WScript.Echo "O arquivo '" & file & "' já existe; apague-o ou escolha outro nome."
  WScript.Quit 1
End If
Set database = Engine().CreateDatabase(file, dbLangGeneral, dbVersion40)
Set tables = Matches(TextOf("tables.json"), _
  """file"": ""([^""]*)"",\s*""table"": ""([^""]*)"",\s*""columns"": \[([^\]]*)\]")
For Each table In tables
  MakeTable table.SubMatches(1), table.SubMatches(2), FieldsOf(TextOf(table.SubMatches(0)))
Next
database.Close
WScript.Echo "Feito: " & file & " (" & tables.Count & " tabelas)"

' The engine of older systems, else the later one, as the component looks for them.
Function Engine()
  Dim found
  On Error Resume Next
  Set found = CreateObject("DAO.DBEngine.36")
  If Err.Number <> 0 Then
    Err.Clear
    Set found = CreateObject("DAO.DBEngine.120")
  End If
  If Err.Number <> 0 Then
    WScript.Echo "O motor de banco de dados (DAO) não está instalado para programas desta arquitetura."
    WScript.Quit 1
  End If
  Set Engine = found
End Function

' The text of a UTF-8 file of the folder.
Function TextOf(name)
  Dim stream
  Set stream = CreateObject("ADODB.Stream")
  stream.Type = adTypeText
  stream.Charset = "utf-8"
  stream.Open
  stream.LoadFromFile folder & "\" & name
  TextOf = stream.ReadText
  stream.Close
End Function

Function Matches(text, pattern)
  Dim expression
  Set expression = New RegExp
  expression.Global = True
  expression.Pattern = pattern
  Set Matches = expression.Execute(text)
End Function

' The fields of a CSV text, one after the other; SubMatches(1) of the last one in a line is no comma.
Function FieldsOf(text)
  If Right(text, 1) <> vbLf Then text = text & vbLf
  Set FieldsOf = Matches(text, "(""(?:[^""]|"""")*""|[^,\r\n""]*)(,|\r?\n)")
End Function

Function Unquoted(field)
  Unquoted = field
  If Left(field, 1) = """" Then Unquoted = Replace(Mid(field, 2, Len(field) - 2), """""", """")
End Function

' `described` holds the columns' names and types, as in tables.json.
Sub MakeTable(name, described, fields)
  Dim types, names, longest, found, field, value, i, inserted, definitions, values
  Set types = CreateObject("Scripting.Dictionary")
  For Each found In Matches(described, """name"": ""([^""]*)"",\s*""type"": ""([^""]*)""")
    types.Add found.SubMatches(0), found.SubMatches(1)
  Next
  Set names = CreateObject("Scripting.Dictionary")
  Set longest = CreateObject("Scripting.Dictionary")
  i = 0
  For Each field In fields  ' the first line holds the names
    value = Unquoted(field.SubMatches(0))
    If inserted = "" Then
      names.Add names.Count, value
      longest.Add longest.Count, 0
      If field.SubMatches(1) <> "," Then inserted = "INSERT INTO [" & name & "] VALUES ("
    Else
      If Len(value) > longest.Item(i) Then longest.Item(i) = Len(value)
      i = (i + 1) Mod names.Count
    End If
  Next
  For i = 0 To names.Count - 1
    definitions = Listed(definitions, "[" & names.Item(i) & "] " & EngineType(types.Item(names.Item(i)), longest.Item(i)))
  Next
  database.Execute "CREATE TABLE [" & name & "] (" & definitions & ")"
  i = -names.Count
  For Each field In fields
    If i >= 0 Then values = Listed(values, Literal(Unquoted(field.SubMatches(0)), types.Item(names.Item(i))))
    i = i + 1
    If i = names.Count Then
      database.Execute inserted & values & ")"
      values = ""
      i = 0
    End If
  Next
End Sub

Function EngineType(described, longest)
  EngineType = "TEXT(" & LONGEST_TEXT & ")"
  If longest > LONGEST_TEXT Then EngineType = "MEMO"
  If described = "INTEGER" Then EngineType = "LONG"
  If described = "BOOLEAN" Then EngineType = "YESNO"
End Function

' An engine's column may refuse empty texts; no look-up tells them from Null.
Function Literal(value, described)
  Literal = value
  If described = "TEXT" Then Literal = "'" & Replace(value, "'", "''") & "'"
  If value = "" Then Literal = "NULL"
End Function

Function Listed(list, item)
  Listed = item
  If list <> "" Then Listed = list & ", " & item
End Function
