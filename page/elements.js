// Elements of the page. Everything from a file is only ever put into it as text.
const byId = (id) => document.getElementById(id);

// An element with a class, a text, and others in it.
function make(name, {className, text, children, ...rest} = {}) {
  const element = document.createElement(name);
  if (className) element.className = className;
  if (text !== undefined) element.textContent = text;
  for (const [key, value] of Object.entries(rest)) element.setAttribute(key, value);
  if (children) element.append(...children);
  return element;
}

const count = (n, one, many) => `${n.toLocaleString('pt-BR')} ${n === 1 ? one : many}`;
