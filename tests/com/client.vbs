' A host in VBScript: late bound, one story a line of the list file (see stories.cpp).
Option Explicit
Dim files, list, journal, story, tremvik, path
Set files = CreateObject("Scripting.FileSystemObject")
Set journal = CreateObject("TestHost.Journal")
Set list = files.OpenTextFile(WScript.Arguments(0), 1)
Do While Not list.AtEndOfStream
  story = Split(list.ReadLine, "|")
  journal.Begin story(3), story(1), story(2)
  Set tremvik = CreateObject("DllTremvik.Tremvik")
  tremvik.bolRetMonitora = False
  path = story(0)
  tremvik.Monitora path
  journal.End tremvik.bolRetMonitora, tremvik.NroLinha, tremvik.Mensagem
Loop
journal.Stop
WScript.Echo "DONE"
