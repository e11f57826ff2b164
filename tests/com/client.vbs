' A host in VBScript: late bound, one story a line of the list file (see client.cpp).
Option Explicit
Dim files, list, diario, story, tremvik, path
Set files = CreateObject("Scripting.FileSystemObject")
Set diario = CreateObject("TesteHost.Diario")
Set list = files.OpenTextFile(WScript.Arguments(0), 1)
Do While Not list.AtEndOfStream
  story = Split(list.ReadLine, "|")
  diario.Iniciar story(3), story(1), story(2)
  Set tremvik = CreateObject("DllTremvik.Tremvik")
  tremvik.bolRetMonitora = False
  path = story(0)
  tremvik.Monitora path
  diario.Fim tremvik.bolRetMonitora, tremvik.NroLinha, tremvik.Mensagem
Loop
diario.Encerrar
WScript.Echo "DONE"
