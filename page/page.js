// Reports, the search for a message, and what the user's actions do.

// ---- reports ----------------------------------------------------------------------------------

// A worker that took the place of a broken one has to see the files again.
async function remindEngine() {
  const lost = examined().filter((entry) => entry.generation !== engine.generation());
  if (!lost.length) return;
  await engine.ask({work: 'forget'});
  for (const entry of examined()) await examine(entry);
}

async function save() {
  await busy;
  const form = byId('form').value;
  try {
    await remindEngine();
    const text = await engine.text({work: 'report', form, masked: byId('mask').checked});
    if (text.startsWith('{"erro"')) throw new Error(JSON.parse(text).erro);
    const url = URL.createObjectURL(new Blob([text], {type: 'application/octet-stream'}));
    const link = make('a', {href: url, download: `relatorio-tremvik.${form}`});
    link.click();
    setTimeout(() => URL.revokeObjectURL(url), 60000);
    say('O relatório foi salvo onde o navegador guarda os arquivos baixados.');
  } catch (error) {
    say(failedSentence(error));
  }
}

// ---- what a message means ---------------------------------------------------------------------

let asked = 0;

async function search() {
  const query = byId('query').value.trim();
  const mine = ++asked;
  if (!query) {
    byId('found').replaceChildren();
    byId('found-status').textContent = '';
    return;
  }
  const codes = await engine.ask({work: 'search', query});
  if (mine !== asked) return;  // typed on meanwhile
  byId('found-status').textContent = codes.length
    ? `${count(codes.length, 'regra', 'regras')}, a mais provável primeiro.` : 'Nenhuma regra tem essa mensagem.';
  byId('found').replaceChildren(...codes.map((code) => rules.get(code)).filter(Boolean).map((rule) => make('li', {
    className: 'finding question', children: [
      make('h3', {text: `${rule.codigo}: ${rule.titulo}`}),
      make('p', {className: 'message', text: rule.mensagem ?? ''}),
      make('p', {text: rule.explicacao}),
      make('p', {children: [make('strong', {text: 'Como corrigir: '}), rule.comoMendar]}),
    ]})));
}

// ---- wiring -----------------------------------------------------------------------------------

// The files under what was dropped, folders included.
async function dropped(items) {
  const found = [];
  async function walk(entry) {
    if (entry.isFile) found.push(await new Promise((resolve, reject) => entry.file(resolve, reject)));
    if (!entry.isDirectory) return;
    const reader = entry.createReader();
    for (let some; (some = await new Promise((resolve, reject) => reader.readEntries(resolve, reject))).length;) {
      for (const one of some) await walk(one);
    }
  }
  const entries = [...items].map((item) => item.webkitGetAsEntry?.()).filter(Boolean);
  for (const entry of entries) await walk(entry).catch(() => say('Uma parte do que foi solto não pôde ser lida.'));
  return found;
}

function listen() {
  for (const id of ['file', 'folder']) {
    byId(id).addEventListener('change', (event) => {
      take(event.target.files);
      event.target.value = '';  // else the same file could not be chosen again
    });
  }
  const drop = byId('drop');
  drop.addEventListener('dragover', (event) => { event.preventDefault(); drop.classList.add('over'); });
  drop.addEventListener('dragleave', () => drop.classList.remove('over'));
  drop.addEventListener('drop', async (event) => {
    event.preventDefault();
    drop.classList.remove('over');
    take(await dropped(event.dataTransfer.items));
  });
  for (const id of ['by-rule', 'by-declaration']) byId(id).addEventListener('change', () => drawFindings());
  byId('refused-only').addEventListener('change', drawList);
  byId('clear').addEventListener('click', clear);
  byId('save').addEventListener('click', save);
  byId('print').addEventListener('click', () => print());
  byId('query').addEventListener('input', search);
}

async function begin() {
  if (typeof WebAssembly !== 'object' || typeof DecompressionStream !== 'function') {
    return say('Este navegador é antigo demais para esta página. Use uma versão de 2023 ou mais nova.');
  }
  try {
    rules = new Map((await engine.ask({work: 'rules'})).map((rule) => [rule.codigo, rule]));
  } catch (error) {
    return say(`A página não pôde ser preparada (${error.message}).`);
  }
  listen();
  say('Pronto. Escolha ou solte arquivos.');
  document.body.dataset.ready = 'yes';
}

begin();
