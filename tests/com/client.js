// A host in JScript: late bound, one story a line of the list file (see stories.cpp).
var files = new ActiveXObject("Scripting.FileSystemObject");
var journal = new ActiveXObject("TestHost.Journal");
var list = files.OpenTextFile(WScript.Arguments(0), 1);
while (!list.AtEndOfStream) {
  var story = list.ReadLine().split("|");
  journal.Begin(story[3], story[1], story[2]);
  var tremvik = new ActiveXObject("DllTremvik.Tremvik");
  tremvik.bolRetMonitora = false;
  tremvik.Monitora(story[0]);
  journal.End(tremvik.bolRetMonitora, tremvik.NroLinha, tremvik.Mensagem);
}
journal.Stop();
WScript.Echo("DONE");
