// The live page of a camera: shows its state and settings, and sets them.
//
// One object holds what is known. The stream of events brings the state and what changes in it; each event changes the
// object first and then what the page shows of it, so that nothing is drawn twice. Names, options and rules all come
// from the API: a camera with other settings needs no change here, but perhaps a word in a table below.

// ---- What the camera calls its things

const MODE = 144; // the setting
const SCHEDULE = 168; // takes a time of day, or "off"

const STATUS = {
  BATTERY_PRESENT: 1,
  BATTERY_LEVEL: 2,
  EXTERNAL_BATTERY: 3,
  RECORDING: 10,
  RECORDED_SECONDS: 13,
  CARD: 33,
  PHOTOS_LEFT: 34,
  VIDEO_SECONDS_LEFT: 35,
  PHOTOS: 38,
  VIDEOS: 39,
  FREE_KB: 54,
  BATTERY_PERCENT: 70,
  MODE: 89,
  CARD_KB: 117,
};
const CHARGING = 4; // a battery level
const CARD_READY = 0;

// Menus, in their order: a setting belongs where its name begins so, and else to the one without a pattern.
const GROUPS = [
  { id: 'video', title: 'Video', names: /^video(\/|_)/ },
  { id: 'photo', title: 'Photo', names: /^photo\// },
  { id: 'multi-shot', title: 'Multi shot', names: /^multi_shot\// },
  { id: 'vellix', title: 'Vellix', names: /^vellix/ },
  { id: 'audio', title: 'Audio', names: /^(audio\/|wind_|sound_|acc_mic_)/ },
  { id: 'general', title: 'Capture', names: null },
  { id: 'easy', title: 'Easy mode', names: /^easy_/ },
  { id: 'shortcuts', title: 'Shortcuts on the screen', names: /^onscreen_/ },
  { id: 'setup', title: 'Setup', names: /^(setup\/|wireless_)/ },
  { id: 'broadcast', title: 'Broadcast', names: /^broadcast\// },
  { id: 'stream', title: 'Stream', names: /^stream\// },
];

// The kinds of modes, by the mode that each begins with. The rules keep a mode to its kind, and a camera goes from one
// kind to the next by its own button; so these are sent by force.
const KINDS = [
  { title: 'Video', option: 'VIDEO' },
  { title: 'Photo', option: 'SINGLE_PHOTO' },
  { title: 'Time lapse', option: 'TIME_LAPSE_VIDEO' },
];

// Names as people say them; all others are their own words.
const PHRASES = { current_flat_mode: 'mode', default_camera_mode: 'mode when switched on' };
const WORDS = {
  acc: 'accessory', addon: 'add-on', ap: 'network', batt: 'battery', eis: 'stabilisation', ev: 'EV',
  fov: 'field of view', fps: 'frames per second', gps: 'GPS', iso: 'ISO', kb: 'KB', lcd: 'LCD', led: 'lights',
  mic: 'microphone', min: 'minimum', msec: 'milliseconds', nlv: 'NLV', num: 'number of', ota: 'update',
  sd: 'card', ssid: 'network name', usb: 'USB', ux: 'interface', wlan: 'Wi-Fi',
};

// What a rule may look at besides settings: "STATUS:VALUE" where a value has words of its own, else the status.
const SITUATIONS = {
  '8:1': 'the camera is busy', '10:1': 'recording', '108:1': 'a capture is scheduled',
  '109:1': 'a preset is being made', 65: 'exposure selection', 74: 'the accessory microphone',
  102: 'the sound cage microphone', 110: 'the sound cage',
};

// What is said only while it is so.
const NOTICES = [
  { status: 6, text: 'Too hot' },
  { status: 85, text: 'Too cold for video' },
  { status: 8, text: 'Busy' },
  { status: 11, text: 'Screen locked' },
  { status: 41, text: 'Firmware update' },
  { status: 45, text: 'Calling to be found' },
  { status: 101, text: 'Counting down' },
  { status: 109, text: 'A preset is being made' },
  { status: 111, text: 'Card below the needed rating' },
  { status: 112, text: 'Card too slow' },
];

// At a glance. A fact that ticks by itself is not marked when it changes.
const FACTS = [
  { title: 'Battery', text: battery, meter: (status) => [status[STATUS.BATTERY_PERCENT], 100] },
  { title: 'Card', text: card, meter: (status) => [status[STATUS.FREE_KB], status[STATUS.CARD_KB]], ticks: true },
  { title: 'Video left', text: (status) => duration(status[STATUS.VIDEO_SECONDS_LEFT]), ticks: true },
  { title: 'Photos left', text: (status) => number(status[STATUS.PHOTOS_LEFT]), ticks: true },
  { title: 'On the card', text: files },
];

// The camera's link, or the page's own where that is lost.
const LINKS = {
  up: 'Camera connected',
  stale: 'The camera does not answer. These are its last known values.',
  off: 'The camera is switched off. These are its last known values.',
  down: 'No camera',
  gone: 'No camera. These are its last known values.',
  lost: 'Connection to the server lost. Trying again …',
};

const MARKED_MS = 2000;
const SLOW_MS = 1000; // an order that takes longer says that it is under way
const SILENCE_MS = 20000; // of the stream, until somebody asks whether it still lives
const FIRST_RETRY_MS = 1000;
const LAST_RETRY_MS = 15000;
const ANSWER_MS = 20000; // the server gives up after 15 s

// ---- What is known

const state = {
  online: false, // with the server
  link: 'down', // of the server with the camera
  camera: {},
  status: {},
  settings: {},
  catalogue: '', // its text, to see whether another one came
  available: {},
  availableRevision: -1,
  schedule: '', // setting 168 in words
  knownAt: 0, // ms since the page's start; when the values were the camera's
};

const rows = new Map(); // what shows a setting, by its number
const $ = (id) => document.getElementById(id);

// ---- Small things

function make(tag, properties = {}, ...children) {
  const element = Object.assign(document.createElement(tag), properties);
  element.append(...children);
  return element;
}

function setText(element, text) {
  if (element.textContent !== text) {
    element.textContent = text;
  }
}

function setAttribute(element, name, value) {
  if (value === null) {
    element.removeAttribute(name);
  } else if (element.getAttribute(name) !== value) {
    element.setAttribute(name, value);
  }
}

const capital = (text) => text.charAt(0).toUpperCase() + text.slice(1);
const number = (value) => (value === undefined ? '' : value.toLocaleString('en'));
const plural = (count, word) => `${number(count)} ${word}${count === 1 ? '' : 's'}`;

// "a, b and c"
function list(texts) {
  return texts.length < 2 ? texts.join('') : `${texts.slice(0, -1).join(', ')} and ${texts.at(-1)}`;
}

function clock(seconds) {
  const two = (part) => String(Math.floor(part)).padStart(2, '0');
  const hours = seconds >= 3600 ? `${Math.floor(seconds / 3600)}:` : '';
  return `${hours}${two((seconds % 3600) / 60)}:${two(seconds % 60)}`;
}

function duration(seconds) {
  if (seconds === undefined) {
    return '';
  }
  const minutes = Math.floor(seconds / 60);
  return minutes >= 60 ? `${Math.floor(minutes / 60)} h ${minutes % 60} min` : `${minutes} min ${seconds % 60} s`;
}

// "multi_shot/vellix_iso_min" is "multi shot vellix ISO minimum".
function inWords(name) {
  return PHRASES[name] ?? name.split(/[/_]/).map((word) => WORDS[word] ?? word).join(' ');
}

const lastWords = (name) => inWords(name.split('/').at(-1));

// ---- Facts

function battery(status) {
  if (status[STATUS.EXTERNAL_BATTERY]) {
    return 'External';
  }
  if (!status[STATUS.BATTERY_PRESENT]) {
    return 'None';
  }
  return `${status[STATUS.BATTERY_PERCENT]} %${status[STATUS.BATTERY_LEVEL] === CHARGING ? ', charging' : ''}`;
}

function card(status) {
  if (status[STATUS.CARD] !== CARD_READY) {
    return `Not ready (${status[STATUS.CARD]})`;
  }
  const gigabytes = (kilobytes) => (kilobytes / 1e6).toFixed(1);
  return `${gigabytes(status[STATUS.FREE_KB])} of ${gigabytes(status[STATUS.CARD_KB])} GB free`;
}

function files(status) {
  return list([plural(status[STATUS.VIDEOS], 'video'), plural(status[STATUS.PHOTOS], 'photo')]);
}

function buildFacts() {
  for (const fact of FACTS) {
    fact.value = make('span');
    fact.bar = fact.meter && make('meter', { ariaHidden: 'true' });
    fact.row = make('div', {}, make('dt', { textContent: fact.title }), make('dd', {}, fact.value));
    if (fact.bar) {
      fact.row.append(fact.bar);
    }
    $('facts').append(fact.row);
  }
  for (const notice of NOTICES) {
    notice.item = make('li', { textContent: notice.text, hidden: true });
    $('notices').append(notice.item);
  }
}

function showFacts(first) {
  const { status } = state;
  for (const fact of FACTS) {
    const text = fact.text(status);
    if (fact.value.textContent !== text) {
      fact.value.textContent = text;
      if (!first && !fact.ticks) {
        mark(fact.row);
      }
    }
    if (fact.bar) {
      const [value, most] = fact.meter(status);
      Object.assign(fact.bar, { max: most, low: most * 0.2, high: most * 0.21, optimum: most, value });
    }
  }
  for (const { status: id, item } of NOTICES) {
    item.hidden = !status[id];
  }
}

// ---- Settings and options in words

const currentOption = (row) => row.byId.get(state.settings[row.number]);

// The option of a name that another one of its setting has, too, has its key besides, unless that says the same.
function optionText(row, option) {
  const isUnique = row.options.filter((other) => other.name === option.name).length === 1;
  const isPlain = isUnique || option.key.replaceAll('_', '.') === option.name;
  return isPlain ? option.name : `${option.name} [${option.key}]`;
}

function valueText(row) {
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
  const rules = why.map(({ because }) => (because.length ? `while ${list(because.map(conditionText))}` : 'on this camera'));
  return `not ${[...new Set(rules)].join(', nor ')}`;
}

// The settings whose change may free what these rules take away.
function keys(why) {
  const conditions = why.flatMap(({ because }) => because.map(asSetting));
  return [...new Set(conditions.map(({ setting }) => setting))].filter((setting) => rows.has(setting));
}

// ---- Rows: a label, a menu or a field, what is said of it, and its hint

function buildRows(catalogue) {
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
  buildKinds();
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

function showRow(row) {
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

function showOffer(row) {
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

function showOnly() {
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
function showGroups() {
  for (const group of GROUPS) {
    if (group.rows?.length) {
      const reasons = new Set(group.rows.map((row) => (row.available === false ? reasonText(row.why) : '')));
      const [reason] = reasons;
      setText(group.note, reasons.size === 1 && reason ? `${capital(reason)}.` : '');
    }
  }
}

// ---- Marks and words for what changed

const marks = new WeakMap();

function mark(element) {
  clearTimeout(marks.get(element));
  element.classList.remove('changed');
  element.getBoundingClientRect(); // so that the mark begins anew
  element.classList.add('changed');
  marks.set(element, setTimeout(() => element.classList.remove('changed'), MARKED_MS));
}

const SAID_AT_ONCE = 4;

function tell(sentences) {
  if (sentences.length) {
    const more = sentences.length - SAID_AT_ONCE;
    $('told').textContent = sentences.slice(0, SAID_AT_ONCE).join(' ') + (more > 0 ? ` And ${more} more.` : '');
  }
}

function fail(note, text) {
  note.textContent = text;
  note.classList.add('bad');
  $('alert').textContent = '';
  $('alert').textContent = text;
}

function say(note, text) {
  note.textContent = text;
  note.classList.remove('bad');
}

// ---- Setting a setting

// What is in the way of every order, in words; empty when nothing is.
function obstacle() {
  if (!state.online) {
    return 'The connection to the server is lost.';
  }
  return { up: '', down: 'There is no camera.' }[state.link] ?? 'The camera does not answer.';
}

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

// Why the rules are against this option, by its key or what was typed.
function objection(row, key) {
  const option = row.options.find((candidate) => candidate.key === key);
  const why = row.available ? row.unavailable.get(option?.id) : row.why;
  return why ? `${capital(reasonText(why))}.` : '';
}

async function send(row, option, force) {
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
    const shown = answer.body.option?.id ?? answer.body.value;
    await apply({}, { [row.number]: shown ?? state.settings[row.number] });
  }
}

// ---- Shutter, modes, media

function shutterText() {
  if (state.status[STATUS.RECORDING]) {
    return 'Stop recording';
  }
  const mode = rows.has(MODE) ? currentOption(rows.get(MODE))?.key : '';
  return /^(?!.*LAPSE).*_PHOTO$/.test(mode) ? 'Take photo' : 'Start recording';
}

function showNow() {
  const recording = Boolean(state.status[STATUS.RECORDING]);
  setText($('mode'), rows.has(MODE) ? valueText(rows.get(MODE)) : '');
  setText($('recording'), recording ? `Recording ${clock(state.status[STATUS.RECORDED_SECONDS] ?? 0)}` : 'Not recording');
  setText($('shutter'), shutterText());
  $('now').classList.toggle('recording', recording);
  document.title = `${recording ? '● ' : ''}${state.camera.model_name || 'Camera'}`;
  const offered = state.available[MODE]?.options ?? [];
  for (const kind of KINDS.filter(({ button }) => button)) {
    setAttribute(kind.button, 'aria-pressed', String(offered.includes(kind.id)));
  }
}

function buildKinds() {
  $('switch').replaceChildren();
  for (const kind of KINDS) {
    kind.id = rows.get(MODE)?.options.find(({ key }) => key === kind.option)?.id;
    kind.button = kind.id === undefined ? null : make('button', { type: 'button', textContent: kind.title });
    if (kind.button) {
      kind.button.addEventListener('click', () => send(rows.get(MODE), kind.option, true));
      $('switch').append(kind.button);
    }
  }
}

// One order of a button at a time. Says what came of it.
async function order(button, path, body) {
  const hindrance = obstacle();
  if (hindrance || button.ariaBusy === 'true') {
    fail($('now-note'), hindrance || 'The last order is under way.');
    return;
  }
  button.ariaBusy = 'true';
  say($('now-note'), '');
  const answer = await request('POST', path, body);
  button.ariaBusy = 'false';
  if (!answer.ok) {
    fail($('now-note'), answer.detail);
  }
}

function askAndDelete(button, path, title, body) {
  $('confirm-title').textContent = title;
  $('confirm').returnValue = 'no';
  $('confirm').onclose = () => $('confirm').returnValue === 'yes' && order(button, path, body);
  $('confirm').showModal();
}

// ---- The link

function showLink() {
  const known = { stale: state.camera.switched_off ? 'off' : 'stale', down: has(state.status) ? 'gone' : 'down' };
  document.body.dataset.link = state.online ? state.link : 'lost';
  setText($('link'), LINKS[state.online ? known[state.link] ?? state.link : 'lost']);
  const hindrance = obstacle();
  setText($('shutter-why'), hindrance);
  for (const button of [$('shutter'), $('delete-last'), $('delete-all'), ...$('switch').children]) {
    setAttribute(button, 'aria-disabled', hindrance ? 'true' : null);
  }
  setText($('name'), state.camera.model_name || 'Camera');
  setText($('identity'), [state.camera.serial_number, state.camera.firmware].filter(Boolean).join(' · '));
  showAge();
}

function showAge() {
  const isOld = state.knownAt && (!state.online || state.link !== 'up');
  const seconds = Math.round((performance.now() - state.knownAt) / 1000);
  setText($('age'), isOld ? `${seconds < 100 ? `${seconds} s` : duration(seconds)} old` : '');
}

// ---- All statuses

const statusNames = new Map(); // the API knows statuses by number; the metrics have their names

function showStatuses() {
  if (!$('statuses').open) {
    return;
  }
  const body = $('statuses').querySelector('tbody');
  const ids = Object.keys(state.status);
  if (body.rows.length !== ids.length) {
    body.replaceChildren(...ids.map((id) => make('tr', {}, make('td', { textContent: id }),
      make('td', { textContent: statusNames.get(id) ?? '' }), make('td'))));
  }
  ids.forEach((id, index) => setText(body.rows[index].cells[2], String(state.status[id])));
}

async function openStatuses() {
  if (!statusNames.size) {
    const text = await fetch('/metrics').then((answer) => (answer.ok ? answer.text() : ''), () => '');
    for (const [, name, id] of text.matchAll(/^zv_status_(\w+)\{status="(\d+)"\}/gm)) {
      statusNames.set(id, name);
    }
    $('statuses').querySelector('tbody').replaceChildren();
  }
  showStatuses();
}

// ---- What comes in

// Takes new values and shows what differs from the known ones. The first ones are no change.
async function apply(status, settings, isFirst = false) {
  const differs = (known, next) => Object.keys(next).filter((id) => known[id] !== next[id]);
  const statuses = differs(state.status, status);
  const changed = differs(state.settings, settings).map(Number);
  Object.assign(state.status, status);
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
  if (statuses.includes(String(STATUS.RECORDING)) && !isFirst) {
    sentences.push(state.status[STATUS.RECORDING] ? 'Recording started.' : 'Recording stopped.');
    mark($('shutter'));
  }
  if (has(state.status)) {
    showFacts(isFirst);
    showNow();
    showStatuses();
  }
  tell(sentences);
}

async function readSchedule() {
  const answer = await request('GET', `settings/${SCHEDULE}`);
  state.schedule = answer.ok ? answer.body.option?.name ?? String(answer.body.value) : '';
}

const has = (object) => Object.keys(object).length > 0;

// Empty until a camera has told something and its catalogue is here.
function showAll() {
  const isEmpty = !has(state.status) || !rows.size;
  $('empty').hidden = !isEmpty;
  $('now').hidden = isEmpty;
  $('settings').hidden = isEmpty;
  setText($('empty'), state.online ? 'No camera yet. It shows here as soon as it answers.' : 'Looking for the camera …');
  showLink();
}

const ON_EVENT = {
  async state({ link, age_ms: age, status, settings }) {
    const isFirst = !has(state.status);
    Object.assign(state, { link, knownAt: has(status) ? performance.now() - age : state.knownAt });
    await apply(status, settings, isFirst);
    showAll();
  },
  async change({ status, settings }) {
    const isFirst = !has(state.status);
    state.knownAt = performance.now();
    await apply(status, settings, isFirst);
    if (!rows.size) {
      await readCamera();
    }
  },
  available(offer) {
    takeOffer(offer);
  },
  async link({ link }) {
    if (state.link === 'up') {
      state.knownAt = performance.now();
    }
    state.link = link;
    say($('now-note'), '');
    showLink();
    await readCamera();
  },
};

function takeOffer({ revision, settings }) {
  if (revision < state.availableRevision) {
    return;
  }
  state.available = settings;
  state.availableRevision = revision;
  rows.forEach(showOffer);
  showGroups();
  showNow();
}

// What the stream does not tell: who the camera is, and after a resume its link and what is available.
async function readCamera() {
  const camera = await request('GET', 'camera');
  if (!camera.ok) {
    return;
  }
  if (camera.body.epoch !== state.camera.epoch) {
    state.availableRevision = -1; // another server counts anew
  }
  state.camera = camera.body;
  state.link = camera.body.link;
  if (camera.body.revision > 0) {
    const [catalogue, available] = await Promise.all([request('GET', 'catalogue'), request('GET', 'available')]);
    if (catalogue.ok && catalogue.text !== state.catalogue) {
      state.catalogue = catalogue.text;
      buildRows(catalogue.body);
      if (rows.has(SCHEDULE)) {
        await readSchedule();
      }
      rows.forEach(showRow);
    }
    if (available.ok) {
      takeOffer(available.body);
    }
    if (state.link !== 'up') {
      const now = await request('GET', 'state');
      state.knownAt = now.ok ? performance.now() - now.body.age_ms : state.knownAt;
    }
  }
  if (has(state.status)) {
    showNow();
  }
  showAll();
}

// ---- The server

// { ok, status, text, body, detail }; the detail is a sentence where it is not ok. Status 0 is no answer.
async function request(method, path, body) {
  try {
    const answer = await fetch(`/api/v1/${path}`, {
      method,
      headers: body === undefined ? {} : { 'Content-Type': 'application/json' },
      body: body === undefined ? undefined : JSON.stringify(body),
      signal: AbortSignal.timeout(ANSWER_MS),
    });
    const text = await answer.text();
    const json = text && /json/.test(answer.headers.get('Content-Type')) ? JSON.parse(text) : {};
    if (answer.status === 401) {
      askToken();
    }
    return { ok: answer.ok, status: answer.status, text, body: json, detail: capital(json.detail ?? answer.statusText) };
  } catch {
    return { ok: false, status: 0, text: '', body: {}, detail: 'The server does not answer.' };
  }
}

let stream = null;
let heardAt = 0;
let retryMs = FIRST_RETRY_MS;
let lastTask = Promise.resolve();

function setOnline(online) {
  if (!online && state.online && state.link === 'up') {
    state.knownAt = performance.now();
  }
  state.online = online;
  showAll();
}

async function connect() {
  const camera = await request('GET', 'camera'); // a stream cannot tell why it fails
  if (camera.status === 401) {
    return;
  }
  if (!camera.ok) {
    connectLater();
    return;
  }
  stream?.close();
  stream = new EventSource('/api/v1/events');
  stream.onopen = () => {
    retryMs = FIRST_RETRY_MS;
    heardAt = performance.now();
    setOnline(true);
    inTurn(readCamera);
  };
  stream.onerror = () => {
    setOnline(false);
    if (stream.readyState === EventSource.CLOSED) {
      connectLater();
    }
  };
  for (const [kind, take] of Object.entries(ON_EVENT)) {
    stream.addEventListener(kind, ({ data }) => {
      heardAt = performance.now();
      inTurn(() => take(JSON.parse(data)));
    });
  }
}

// What comes in is taken one after the other, for some of it waits for an answer: so the newest has the last word.
function inTurn(task) {
  lastTask = lastTask.then(task).catch(console.error);
}

function connectLater() {
  stream?.close();
  setOnline(false);
  setTimeout(connect, retryMs);
  retryMs = Math.min(2 * retryMs, LAST_RETRY_MS);
}

// A stream over a dead network says nothing, like one of a camera that does not change.
async function listen() {
  if (!state.online || performance.now() - heardAt < SILENCE_MS) {
    return;
  }
  heardAt = performance.now();
  if (!(await request('GET', 'camera')).status && state.online) {
    connectLater();
  }
}

function askToken() {
  if (!$('ask').open) {
    setText($('ask-note'), document.cookie.includes('zvweb_token=') ? 'The token was not accepted.' : '');
    $('ask').showModal();
  }
}

function takeToken() {
  if ($('token').value) {
    document.cookie = `zvweb_token=${$('token').value}; Path=/; SameSite=Strict`;
  }
  $('token').value = '';
  connect();
}

// ---- Begin

buildFacts();
$('shutter').addEventListener('click', () => order($('shutter'),
  state.status[STATUS.RECORDING] ? 'capture/stop' : 'capture/start'));
$('delete-last').addEventListener('click', () => askAndDelete($('delete-last'), 'media/delete-last',
  'Delete the file that was taken last?'));
$('delete-all').addEventListener('click', () => askAndDelete($('delete-all'), 'media/delete-all',
  `Delete everything on the card, ${files(state.status)}?`, { confirm: true }));
$('only').addEventListener('change', showOnly);
$('statuses').addEventListener('toggle', openStatuses);
$('ask').addEventListener('close', takeToken);
setInterval(() => {
  showAge();
  listen();
}, 1000);
connect();
