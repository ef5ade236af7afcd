// What all parts of the page do with its elements: fill them, mark them, say something in them.

const MARKED_MS = 2000;

export const $ = (id) => document.getElementById(id);

export function make(tag, properties = {}, ...children) {
  const element = Object.assign(document.createElement(tag), properties);
  element.append(...children);
  return element;
}

export function setText(element, text) {
  if (element.textContent !== text) {
    element.textContent = text;
  }
}

export function setAttribute(element, name, value) {
  if (value === null) {
    element.removeAttribute(name);
  } else if (element.getAttribute(name) !== value) {
    element.setAttribute(name, value);
  }
}

// ---- Marks and words for what changed

const marks = new WeakMap();

export function mark(element) {
  clearTimeout(marks.get(element));
  element.classList.remove('changed');
  element.getBoundingClientRect(); // so that the mark begins anew
  element.classList.add('changed');
  marks.set(element, setTimeout(() => element.classList.remove('changed'), MARKED_MS));
}

const SAID_AT_ONCE = 4;

export function tell(sentences) {
  if (sentences.length) {
    const more = sentences.length - SAID_AT_ONCE;
    $('told').textContent = sentences.slice(0, SAID_AT_ONCE).join(' ') + (more > 0 ? ` And ${more} more.` : '');
  }
}

export function fail(note, text) {
  note.textContent = text;
  note.classList.add('bad');
  $('alert').textContent = '';
  $('alert').textContent = text;
}

export function say(note, text) {
  note.textContent = text;
  note.classList.remove('bad');
}
