// The list of files: read, examined one after the other, shown by name and verdict.
const kMostBytes = 256 * 1024 * 1024;

let rules = new Map();
const files = [];  // in the order of the list
let shown = null;  // the one whose findings are on the page
let busy = Promise.resolve();

const say = (sentence) => { byId('status').textContent = sentence; };

// ---- reading and examining --------------------------------------------------------------------

const settings = () => ({limit: Math.max(0, Math.trunc(Number(byId('limit').value)) || 0), yes: byId('yes').checked});

function unreadable(error) {
  if (error.name === 'NotReadableError' || error.name === 'NotFoundError') {
    return 'O arquivo mudou ou desapareceu depois de escolhido. Escolha-o de novo.';
  }
  return `O arquivo não pôde ser lido (${error.name}). Confira se ele está aberto em outro programa.`;
}

function failedSentence(error) {
  if (/memory|allocation|RangeError/i.test(error.message)) {
    return 'A memória do navegador não bastou para este arquivo. Feche outras páginas e tente de novo.';
  }
  return `O programa falhou com este arquivo (${error.message}). Avise quem o mantém.`;
}

async function read(entry) {
  if (entry.file.size > kMostBytes) {
    throw new Error('O arquivo passa de 256 MB; um arquivo Pré-Formatado tem no máximo uns 15 MB.');
  }
  try {
    return new Uint8Array(await entry.file.arrayBuffer());
  } catch (error) {
    throw new Error(unreadable(error));
  }
}

async function examine(entry) {
  let bytes;
  try {
    bytes = await read(entry);
  } catch (error) {
    Object.assign(entry, {state: 'erro', problem: error.message, findings: [], unexamined: [], declarations: []});
    return;
  }
  try {
    const answer = await engine.ask({work: 'examine', name: entry.name, bytes, ...entry.settings});
    if (answer.erro) throw new Error(answer.erro);
    const told = answer.relatorio.arquivos[0];
    Object.assign(entry, {
      bytes, state: told.estado, problem: told.problema, unexamined: told.naoExaminado, limited: told.limitado,
      declarations: answer.declaracoes, generation: engine.generation(),
      findings: told.inconsistencias.map((one, i) => ({...one, marks: answer.marcas[i]})),
    });
  } catch (error) {
    Object.assign(entry, {state: 'erro', problem: failedSentence(error), findings: [], unexamined: [], declarations: []});
  }
}

// One file after the other; the page stays alive meanwhile.
function take(chosen) {
  const added = [...chosen].map((file) => ({
    file, name: file.webkitRelativePath || file.name, settings: settings(), state: '', findings: [],
  }));
  if (!added.length) return say('Nenhum arquivo foi escolhido.');
  files.push(...added);
  drawList();
  busy = busy.then(async () => {
    const progress = byId('progress');
    progress.max = added.length;
    progress.hidden = false;
    for (const [i, entry] of added.entries()) {
      if (added.length > 1) progress.value = i; else progress.removeAttribute('value');
      say(`Conferindo ${entry.name} (${i + 1} de ${added.length})…`);
      await examine(entry);
      drawList();
      if (!shown || (i === 0 && added.length === 1)) show(entry);
    }
    progress.hidden = true;
    sayResult(added);
  });
}

function sayResult(added) {
  const of = (state) => added.filter((entry) => entry.state === state).length;
  const parts = [count(of('aceito'), 'aceito', 'aceitos'), count(of('recusado'), 'recusado', 'recusados')];
  if (of('erro')) parts.push(`${of('erro')} sem exame`);
  say(`${count(added.length, 'arquivo conferido', 'arquivos conferidos')}: ${parts.join(', ')}.`);
  document.body.dataset.done = String(Number(document.body.dataset.done || 0) + added.length);
}

// ---- the list of files ------------------------------------------------------------------------

const verdicts = {aceito: 'aceito', recusado: 'recusado', erro: 'não examinado', '': 'na fila'};

function drawList() {
  const only = byId('refused-only').checked;
  byId('list').replaceChildren(...files.filter((entry) => !only || entry.state !== 'aceito').map((entry) => {
    const button = make('button', {type: 'button', 'aria-current': String(entry === shown), children: [
      make('span', {className: 'name', text: entry.name}),
      make('span', {className: entry.state, text: verdicts[entry.state]}),
      make('span', {className: 'quiet', text: entry.findings.length
        ? count(entry.findings.length, 'inconsistência', 'inconsistências') : ''}),
    ]});
    button.addEventListener('click', () => { show(entry); byId('result').focus(); });
    return make('li', {children: [button]});
  }));
  byId('list-tools').hidden = files.length === 0;
  byId('reports').hidden = !files.some((entry) => entry.state === 'aceito' || entry.state === 'recusado');
}

async function clear() {
  await busy;
  files.length = 0;
  shown = null;
  byId('result').hidden = true;
  drawList();
  await engine.ask({work: 'forget'});
  say('A lista está vazia.');
}
