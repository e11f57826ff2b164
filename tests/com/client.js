// A host in JScript: late bound, one story a line of the list file (see client.cpp).
var files = new ActiveXObject("Scripting.FileSystemObject");
var diario = new ActiveXObject("TesteHost.Diario");
var list = files.OpenTextFile(WScript.Arguments(0), 1);
while (!list.AtEndOfStream) {
  var story = list.ReadLine().split("|");
  diario.Iniciar(story[3], story[1], story[2]);
  var tremvik = new ActiveXObject("DllTremvik.Tremvik");
  tremvik.bolRetMonitora = false;
  tremvik.Monitora(story[0]);
  diario.Fim(tremvik.bolRetMonitora, tremvik.NroLinha, tremvik.Mensagem);
}
diario.Encerrar();
WScript.Echo("DONE");
