' Imports a file through the component, late bound:  cscript //nologo importar.vbs FILE
' Ends with 0 (accepted), 1 (refused) or 2 (usage).
Option Explicit
If WScript.Arguments.Count <> 1 Then
  WScript.Echo "Uso: cscript //nologo importar.vbs ARQUIVO"
  WScript.Quit 2
End If

Dim tremvik, passos
passos = 0
' The second argument binds the events to the procedures tremvik_Progresso and tremvik_Fechar.
Set tremvik = WScript.CreateObject("DllTremvik.Tremvik", "tremvik_")
tremvik.bolRetMonitora = False
tremvik.Monitora WScript.Arguments(0)
If tremvik.bolRetMonitora Then
  WScript.Echo "Recusado na linha " & tremvik.NroLinha & ":" & vbCrLf & tremvik.Mensagem
  WScript.Quit 1
End If
WScript.Echo "Aceito (" & passos & " passos)"

Sub tremvik_Progresso()
  passos = passos + 1
End Sub

Sub tremvik_Fechar()
  WScript.Echo "Fechar: aqui o programa encerra a tela do arquivo."
End Sub
