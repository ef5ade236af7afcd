// The settings: a row each, in groups, with what is not offered and why; and the orders that set them.

import { GROUPS, MODE, SCHEDULE, SITUATIONS, STATUS, capital, inWords, lastWords, list } from './words.js';
import { $, fail, make, mark, say, setAttribute, setText, tell } from './view.js';
import { differing, obstacle, rows, state } from './known.js';
import { request } from './server.js';

const SLOW_MS = 1000; // an order that takes longer says that it is under way

// ---- In words

export const currentOption = (row) => row.byId.get(state.settings[row.number]);

// The option of a name that another one of its setting has, too, has its key besides, unless that says the same.
function optionText(row, option) {
  const isUnique = row.options.filter((other) => other.name === option.name).length === 1;
  const isPlain = isUnique || option.key.replaceAll('_', '.') === option.name;
  return isPlain ? option.name : `${option.name} [${option.key}]`;
}

export function valueText(row) {
  if (row.number === SCHEDULE) {
    return state.schedule;
  }
  const option = currentOption(row);
  return option ? optionText(row, option) : String(state.settings[row.number] ?? '');
}

// The mode is looked at as a status, too.
function asSetting(condition) {
  if (condition.status !== STATUS.MODE) {
    return condition;
  }
  const option = rows.get(MODE)?.byId.get(condition.value);
  return option ? { setting: MODE, option: option.key } : condition;
}

function conditionText(condition) {
  const { setting, option, status, value } = asSetting(condition);
  if (setting === undefined) {
    return SITUATIONS[`${status}:${value}`] ?? `${SITUATIONS[status] ?? `status ${status}`} is ${value}`;
  }
  const row = rows.get(setting);
  const found = row?.options.find((candidate) => candidate.key === option);
  return `${row?.title ?? `setting ${setting}`} is ${found ? optionText(row, found) : option}`;
}

// "while Mode is Video and Video resolution is 4K, nor while ...": a rule each.
function reasonText(why) {
  const ruleText = ({ because }) => (because.length ? `while ${list(because.map(conditionText))}` : 'on this camera');
  const rules = why.map(ruleText);
  return `not ${[...new Set(rules)].join(', nor ')}`;
}

// The settings whose change may free what these rules take away.
function keys(why) {
  const conditions = why.flatMap(({ because }) => because.map(asSetting));
  return [...new Set(conditions.map(({ setting }) => setting))].filter((setting) => rows.has(setting));
}

// ---- Rows: a label, a menu or a field, what is said of it, and its hint

export function buildRows(catalogue) {
  rows.clear();
  $('rows').replaceChildren();
  $('groups').replaceChildren();
  $('mode-row').replaceChildren();
  for (const entry of catalogue.settings) {
    const isOnly = (words) => catalogue.settings.filter(({ name }) => words(name) === words(entry.name)).length === 1;
    rows.set(entry.setting, buildRow(entry, isOnly(lastWords), isOnly(inWords)));
  }
  for (const group of GROUPS) {
    buildGroup(group);
  }
  if (rows.has(MODE)) {
    $('mode-row').append(rows.get(MODE).element);
  }
}

function groupOf(name) {
  return GROUPS.find(({ names }) => names?.test(name)) ?? GROUPS.find(({ names }) => !names);
}

function buildGroup(group) {
  group.rows = [...rows.values()].filter((row) => row.number !== MODE && groupOf(row.name) === group);
  if (!group.rows.length) {
    return;
  }
  group.note = make('p', { className: 'why' });
  group.section = make('section', { id: group.id, className: 'group', tabIndex: -1 },
    make('h3', { id: `${group.id}-title`, textContent: group.title }), group.note,
    make('div', { className: 'grid' }, ...group.rows.map((row) => row.element)));
  group.section.setAttribute('aria-labelledby', `${group.id}-title`);
  $('rows').append(group.section);
  const link = make('a', { href: `#${group.id}`, textContent: group.title });
  link.addEventListener('click', () => showAlso(group.section));
  $('groups').append(link);
}

// Below its group's title a setting goes by the last part of its name, elsewhere only where no other one has it. Where
// even the whole name is shared the number tells them apart.
function buildRow(entry, isLastUnique, isUnique) {
  const id = `setting-${entry.setting}`;
  const suffix = isUnique ? '' : ` (${entry.setting})`;
  const label = capital(lastWords(entry.name)) + suffix;
  const row = {
    number: entry.setting,
    name: entry.name,
    title: isLastUnique ? label : capital(inWords(entry.name)) + suffix,
    options: entry.options,
    byId: new Map(entry.options.map((option) => [option.id, option])),
    reasons: make('ul', { id: `${id}-why` }),
    keys: make('p', { className: 'keys' }),
    note: make('p', { className: 'note' }),
    offer: '', // the text of what is available, to see whether it changed
    available: true,
    why: [],
    unavailable: new Map(), // why an option is not offered, by its id
    busy: false,
    wish: undefined,
  };
  row.field = row.number === SCHEDULE || !row.options.length ? buildField(row) : buildMenu(row);
  row.field.id = id;
  row.field.setAttribute('aria-describedby', `${id}-why`);
  row.hint = make('div', { className: 'hint', hidden: true }, row.reasons, row.keys);
  row.element = make('div', { className: 'row' },
    make('label', { htmlFor: id }, make('span', { textContent: label }), ' ', make('code', { textContent: row.name })),
    row.field, row.note, row.hint);
  row.field.addEventListener('change', () => choose(row));
  row.element.addEventListener('keydown', ({ key }) => row.element.classList.toggle('quiet', key === 'Escape'));
  row.element.addEventListener('keyup', ({ key }) => key === 'Tab' && row.hint.scrollIntoView({ block: 'nearest' }));
  for (const left of ['focusout', 'mouseleave']) {
    row.element.addEventListener(left, () => row.element.classList.remove('quiet'));
  }
  return row;
}

function buildMenu(row) {
  row.items = new Map(row.options.map((option) => [option.id,
    make('option', { value: option.key, textContent: optionText(row, option) })]));
  return make('select', {}, ...row.items.values());
}

function buildField(row) {
  return row.number === SCHEDULE
    ? make('input', { type: 'text', placeholder: '7:30 or off', autocomplete: 'off' })
    : make('input', { type: 'number', min: '0', step: '1' });
}

export function showRow(row) {
  if (row.busy) {
    return; // shows what is under way
  }
  if (!row.items) {
    row.field.value = valueText(row);
    return;
  }
  const id = state.settings[row.number];
  row.other?.remove();
  if (row.items.has(id)) {
    row.items.get(id).selected = true;
  } else {
    row.other = make('option', { textContent: valueText(row), disabled: true, selected: true });
    row.field.append(row.other);
  }
  showOptions(row);
}

export function showOffer(row) {
  const offer = state.available[row.number];
  const text = JSON.stringify(offer);
  if (!offer || row.offer === text) {
    return;
  }
  row.offer = text;
  row.available = offer.available;
  row.why = offer.why;
  row.element.classList.toggle('off', !offer.available);
  setAttribute(row.field, 'aria-disabled', offer.available ? null : 'true');
  if (row.items) {
    row.unavailable = new Map(offer.unavailable.map(({ id, why }) => [id, why]));
    showOptions(row);
  } else {
    row.field.readOnly = !offer.available;
  }
  showHint(row, offer);
}

function showOptions(row) {
  for (const [id, item] of row.items) {
    const why = row.unavailable.get(id);
    item.disabled = why !== undefined;
    setAttribute(item, 'title', why ? capital(reasonText(why)) : null);
    // What the open menu shows; an option's text stays its name, and so does the closed menu.
    const isSaid = why && row.available && !item.selected;
    setAttribute(item, 'label', isSaid ? `${item.textContent} – ${reasonText(why)}` : null);
  }
}

// Why a setting is not offered, or which of its options are not: those of one reason together.
function showHint(row, offer) {
  const lines = new Map();
  for (const { id, why } of offer.available ? offer.unavailable : []) {
    const reason = reasonText(why);
    lines.set(reason, [...(lines.get(reason) ?? []), optionText(row, row.byId.get(id))]);
  }
  const texts = offer.available ? [...lines].map(([reason, options]) => `${list(options)}: ${reason}.`)
    : [`${capital(reasonText(offer.why))}.`];
  row.reasons.replaceChildren(...texts.map((text) => make('li', { textContent: text })));
  const all = offer.available ? offer.unavailable.flatMap(({ why }) => why) : offer.why;
  row.keys.replaceChildren(...keys(all).filter((setting) => setting !== row.number).map(buildKey));
  if (row.number === MODE) {
    row.keys.append('The buttons above lead to another kind of mode.');
  }
  row.hint.hidden = !texts.length;
}

function buildKey(setting) {
  const button = make('button', { type: 'button', textContent: `Change ${rows.get(setting).title}` });
  button.addEventListener('click', () => goTo(rows.get(setting)));
  return button;
}

function goTo(row) {
  showAlso(row.element);
  row.field.focus({ focusVisible: true });
  row.element.scrollIntoView({ block: 'center' });
}

export function showOnly() {
  $('rows').classList.toggle('only', $('only').checked);
}

// Somebody goes to what may be hidden now.
function showAlso(element) {
  if (!element.checkVisibility()) {
    $('only').checked = false;
    showOnly();
  }
}

// A group of which nothing is offered, all for one reason, says so once.
export function showGroups() {
  for (const group of GROUPS) {
    if (group.rows?.length) {
      const reasons = new Set(group.rows.map((row) => (row.available === false ? reasonText(row.why) : '')));
      const [reason] = reasons;
      setText(group.note, reasons.size === 1 && reason ? `${capital(reason)}.` : '');
    }
  }
}

// ---- What comes in

// Takes new options' ids and shows those that differ from the known ones. Returns a sentence for each change, which the
// first ones are not.
export async function takeSettings(settings, isFirst = false) {
  const changed = differing(state.settings, settings).map(Number);
  Object.assign(state.settings, settings);
  if (changed.includes(SCHEDULE)) {
    await readSchedule();
  }
  const sentences = [];
  for (const row of changed.map((id) => rows.get(id)).filter(Boolean)) {
    showRow(row);
    if (!isFirst) {
      mark(row.element);
      sentences.push(`${row.title} is now ${valueText(row)}.`);
      if (!row.busy) {
        say(row.note, '');
      }
    }
  }
  return sentences;
}

export async function readSchedule() {
  const answer = await request('GET', `settings/${SCHEDULE}`);
  state.schedule = answer.ok ? answer.body.option?.name ?? String(answer.body.value) : '';
}

// ---- Orders

// An order goes out when the last one is through; of several choices meanwhile, the last one does.
async function choose(row) {
  if (row.field.value === '') {
    say(row.note, `Still ${valueText(row)}.`); // somebody may be about to type
    return;
  }
  row.wish = row.field.value;
  if (row.busy) {
    return;
  }
  row.busy = true;
  row.element.setAttribute('aria-busy', 'true');
  while (row.wish !== undefined) {
    const option = row.wish;
    row.wish = undefined;
    await send(row, option);
  }
  row.element.removeAttribute('aria-busy');
  row.busy = false;
  showRow(row);
}

// The stream tells the same, sooner or later: all of it is said once, and at once.
async function takeChange({ revision, settings }) {
  if (revision > state.revision) {
    tell(await takeSettings(settings));
  }
}

// Why the rules are against this option, by its key or what was typed.
function objection(row, key) {
  const option = row.options.find((candidate) => candidate.key === key);
  const why = row.available ? row.unavailable.get(option?.id) : row.why;
  return why ? `${capital(reasonText(why))}.` : '';
}

export async function send(row, option, force) {
  const hindrance = obstacle() || (force ? '' : objection(row, option));
  if (hindrance) {
    fail(row.note, hindrance);
    return;
  }
  say(row.note, '');
  const slow = setTimeout(say, SLOW_MS, row.note, 'Sending …');
  const body = { option: row.options.length ? option : Number(option) };
  const answer = await request('PUT', `settings/${row.number}`, force ? { ...body, force } : body);
  clearTimeout(slow);
  if (!answer.ok) {
    fail(row.note, answer.detail);
  } else if (answer.status === 202) {
    say(row.note, 'Sent; the camera does not show it yet.');
  } else {
    say(row.note, '');
    await takeChange(answer.body.change);
  }
}
