// One file: its findings, each with its line, reason and explanation.
const kPiece = 100;  // findings that are shown at a time
const kAround = 3;   // neighbours of a line on either side

// The file's lines as the importer's text passes part them: CR LF, a bare LF or a bare CR ends one.
function lineStarts(entry) {
  if (entry.starts) return entry.starts;
  const {bytes} = entry, starts = [0];
  for (let i = 0; i < bytes.length; ++i) {
    if (bytes[i] === 13 && bytes[i + 1] === 10) ++i;
    if (bytes[i] === 10 || bytes[i] === 13) starts.push(i + 1);
  }
  return entry.starts = starts;
}

const latin = new TextDecoder('windows-1252');

// One cell for each byte: Windows-1252, with a symbol for what cannot be seen.
function cells(bytes) {
  return latin.decode(bytes).replace(/[\u0000-\u001f]/g, (c) => String.fromCharCode(0x2400 + c.charCodeAt(0)))
    .replace(/\u007f/g, '\u2421').replace(/[\u0080-\u009f]/g, '\ufffd').replace(/\u00a0/g, '\u237d')
    .replace(/\u00ad/g, '\u2010');
}

function line(entry, number) {
  const starts = lineStarts(entry);
  if (number < 1 || number > starts.length || starts[number - 1] >= entry.bytes.length) return null;
  const end = number < starts.length ? starts[number] : entry.bytes.length;
  return cells(entry.bytes.subarray(starts[number - 1], Math.min(end, starts[number - 1] + 4000)).filter((b) => b !== 10 && b !== 13));
}

function ruler(length) {
  const out = [];
  for (let column = 1; column <= length; ++column) out.push(column % 5 === 0 ? '+' : '-');
  for (let column = 10; column <= length; column += 10) {
    [...String(column)].forEach((digit, i, all) => { out[column - all.length + i] = digit; });
  }
  return out.join('');
}

// The line of a finding with what is wrong in it marked; marks are columns, both ends included.
function markedLine(content, finding) {
  const parts = [];
  const last = Math.max(content.length, ...finding.marks.map(([, end]) => end));
  const inMark = (column) => finding.marks.some(([first, end]) => column >= first && column <= end);
  const inField = (column) => column >= finding.coluna && column < finding.coluna + finding.largura;
  const kindOf = (column) => (inMark(column) ? 'mark' : inField(column) ? 'field' : '');
  for (let from = 1; from <= last;) {
    let to = from;
    while (to < last && kindOf(to + 1) === kindOf(from)) ++to;
    const text = content.slice(from - 1, to).padEnd(to - from + 1, '\u2423');
    const kind = kindOf(from);
    parts.push(kind === 'mark' ? make('mark', {text}) : kind ? make('span', {className: kind, text}) : text);
    from = to + 1;
  }
  return parts;
}

const gutter = (number) => `${String(number).padStart(6)} │ `;

function linesOf(entry, finding, around) {
  const content = line(entry, finding.linha);
  if (content === null) return null;
  const pre = make('pre');
  const mark = markedLine(content, finding);
  pre.append(make('span', {className: 'ruler', text: `${gutter('')}${ruler(Math.max(content.length, 10))}\n`, 'aria-hidden': 'true'}));
  for (let number = finding.linha - around; number <= finding.linha + around; ++number) {
    const other = number === finding.linha ? null : line(entry, number);
    if (number === finding.linha) pre.append(gutter(number), ...mark, '\n');
    else if (other !== null) pre.append(make('span', {className: 'quiet', text: `${gutter(number)}${other}\n`}));
  }
  return make('div', {className: 'lines', tabindex: '0', role: 'group', 'aria-label': `Linha ${finding.linha}`, children: [pre]});
}

function placeWords(finding) {
  if (!finding.linha) return 'No arquivo inteiro';
  const words = [`Linha ${finding.linha}`];
  if (finding.registro) words.push(`registro ${finding.registro}`);
  if (finding.campo) words.push(`campo ${finding.campo}`);
  if (finding.coluna) {
    const end = finding.coluna + Math.max(finding.largura, 1) - 1;
    words.push(end === finding.coluna ? `coluna ${end}` : `colunas ${finding.coluna} a ${end}`);
  }
  return words.join(', ');
}

function aboutQuestion() {
  return make('p', {children: [make('span', {className: 'aviso', text: 'É uma pergunta do importador. '}),
    'Com Sim, a importação continua; com Não, o arquivo é recusado por ela.']});
}

function drawFinding(entry, finding) {
  const question = finding.tipo === 'aviso';
  const rule = rules.get(finding.regra);
  const item = make('li', {className: question ? 'finding question' : 'finding'});
  item.append(make('h4', {text: rule ? `${finding.regra}: ${rule.titulo}` : finding.regra}));
  item.append(make('p', {className: 'place', text: placeWords(finding) + (finding.valor ? `, valor “${finding.valor}”` : '')}));
  let lines = linesOf(entry, finding, 0);
  if (lines) {
    item.append(lines);
    const button = make('button', {type: 'button', text: 'Mostrar as linhas vizinhas', 'aria-pressed': 'false'});
    button.addEventListener('click', () => {
      const pressed = button.getAttribute('aria-pressed') !== 'true';
      button.setAttribute('aria-pressed', String(pressed));
      const wider = linesOf(entry, finding, pressed ? kAround : 0);
      lines.replaceWith(wider);
      lines = wider;
    });
    item.append(make('p', {className: 'screen-only', children: [button]}));
  }
  item.append(make('p', {className: 'message', text: finding.mensagem.replace(/\r\n?/g, '\n').trim()}));
  if (question) item.append(aboutQuestion());
  if (finding.porque) item.append(make('p', {children: [make('strong', {text: 'Por quê: '}), finding.porque]}));
  if (rule) {
    item.append(make('p', {text: rule.explicacao}));
    item.append(make('p', {children: [make('strong', {text: 'Como corrigir: '}), rule.comoMendar]}));
  }
  if (finding.doImportador) {
    item.append(make('p', {className: 'quiet', text: 'É esta que a importação mostra hoje; as outras só apareceriam depois de corrigida.'}));
  }
  return item;
}

// The number of the declaration to which a line belongs, from 0; -1 for lines before the first one.
function declarationOf(entry, number) {
  let found = -1;
  entry.declarations.forEach(({linha}, i) => { if (linha <= number) found = i; });
  return found;
}

const month = (ref) => (/^\d{6}$/.test(ref) ? `${ref.slice(4)}/${ref.slice(0, 4)}` : ref);

function fillChoices(entry) {
  const used = new Map();
  for (const {regra} of entry.findings) used.set(regra, (used.get(regra) || 0) + 1);
  const ordered = [...used].sort((a, b) => b[1] - a[1] || a[0].localeCompare(b[0]));
  byId('by-rule').replaceChildren(make('option', {value: '', text: 'todas'}), ...ordered.map(([code, times]) =>
    make('option', {value: code, text: `${code} (${times})`})));
  const wrong = new Map();
  for (const finding of entry.findings) {
    const at = declarationOf(entry, finding.linha);
    if (at >= 0) wrong.set(at, (wrong.get(at) || 0) + 1);
  }
  byId('by-declaration').replaceChildren(make('option', {value: '', text: 'todas'}),
    ...[...wrong].sort((a, b) => a[0] - b[0]).map(([at, times]) => {
      const {ie, referencia} = entry.declarations[at];
      const name = ie ? `${ie} ${month(referencia)}` : 'antes da primeira';
      return make('option', {value: String(at), text: `${name} (${times})`});
    }));
  byId('summary').hidden = ordered.length === 0;
  byId('summary').querySelector('tbody').replaceChildren(...ordered.map(([code, times]) => make('tr', {children: [
    make('td', {text: code}), make('td', {text: rules.get(code)?.titulo ?? ''}),
    make('td', {className: 'number', text: String(times)})]})));
}

function chosenFindings() {
  const rule = byId('by-rule').value, declaration = byId('by-declaration').value;
  return shown.findings.filter((finding) => (!rule || finding.regra === rule) &&
    (declaration === '' || declarationOf(shown, finding.linha) === Number(declaration)));
}

function drawFindings(upTo = kPiece) {
  const all = chosenFindings();
  byId('findings').replaceChildren(...all.slice(0, upTo).map((finding) => drawFinding(shown, finding)));
  for (const lines of byId('findings').querySelectorAll('.lines')) {
    const mark = lines.querySelector('mark');
    if (mark) lines.scrollLeft = Math.max(0, mark.offsetLeft - lines.offsetLeft - lines.clientWidth / 3);
  }
  byId('findings-heading').hidden = all.length === 0;
  const more = byId('more');
  more.hidden = all.length <= upTo;
  more.onclick = () => drawFindings(upTo + kPiece);
}

function verdictWords(entry) {
  if (entry.state === 'erro') return entry.problem;
  const faults = entry.findings.filter(({tipo}) => tipo !== 'aviso').length;
  const questions = entry.findings.length - faults;
  const parts = [];
  if (faults) parts.push(count(faults, 'inconsistência', 'inconsistências'));
  if (questions) parts.push(count(questions, 'pergunta', 'perguntas'));
  const what = entry.state === 'aceito' ? 'Arquivo aceito' : 'Arquivo recusado';
  let words = parts.length ? `${what}: ${parts.join(' e ')}.` : `${what}.`;
  if (entry.limited) words += ' O máximo pedido foi alcançado: pode haver mais. Aumente-o nas opções e escolha o arquivo de novo.';
  return words;
}

function show(entry) {
  shown = entry;
  byId('result').hidden = false;
  byId('result-heading').textContent = entry.name;
  byId('verdict').textContent = entry.state ? verdictWords(entry) : 'Ainda na fila.';
  byId('verdict').className = entry.state;
  byId('unexamined').replaceChildren(...(entry.unexamined || []).map((gap) => make('p', {
    className: 'quiet', text: `Não examinado: linhas ${gap.linha} a ${gap.ate}. ${gap.porque}`})));
  byId('tools').hidden = entry.findings.length === 0;
  fillChoices({...entry, declarations: entry.declarations || []});
  drawFindings();
  drawTree(entry);
  drawList();
}
