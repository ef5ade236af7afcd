// What the camera does now: facts, shutter, modes, files; its link, and the table of all statuses.

import {
  CARD_READY, CHARGING, KINDS, LINKS, MODE, NOTICES, STATUS, clock, duration, list, number, plural,
} from './words.js';
import { $, fail, make, mark, say, setAttribute, setText } from './view.js';
import { has, obstacle, rows, state } from './known.js';
import { request } from './server.js';
import { currentOption, send, valueText } from './settings.js';

// At a glance. A fact that ticks by itself is not marked when it changes.
const FACTS = [
  { title: 'Battery', text: battery, meter: (status) => [status[STATUS.BATTERY_PERCENT], 100] },
  { title: 'Card', text: card, meter: (status) => [status[STATUS.FREE_KB], status[STATUS.CARD_KB]], ticks: true },
  { title: 'Video left', text: (status) => duration(status[STATUS.VIDEO_SECONDS_LEFT]), ticks: true },
  { title: 'Photos left', text: (status) => number(status[STATUS.PHOTOS_LEFT]), ticks: true },
  { title: 'On the card', text: files },
];

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

export function files(status) {
  return list([plural(status[STATUS.VIDEOS], 'video'), plural(status[STATUS.PHOTOS], 'photo')]);
}

export function buildFacts() {
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

export function showFacts(first) {
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

// ---- Shutter, modes, media

function shutterText() {
  if (state.status[STATUS.RECORDING]) {
    return 'Stop recording';
  }
  const mode = rows.has(MODE) ? currentOption(rows.get(MODE))?.key : '';
  return /^(?!.*LAPSE).*_PHOTO$/.test(mode) ? 'Take photo' : 'Start recording';
}

export function showNow() {
  const recording = Boolean(state.status[STATUS.RECORDING]);
  setText($('mode'), rows.has(MODE) ? valueText(rows.get(MODE)) : '');
  const recorded = clock(state.status[STATUS.RECORDED_SECONDS] ?? 0);
  setText($('recording'), recording ? `Recording ${recorded}` : 'Not recording');
  setText($('shutter'), shutterText());
  $('now').classList.toggle('recording', recording);
  document.title = `${recording ? '● ' : ''}${state.camera.model_name || 'Camera'}`;
  const offered = state.available[MODE]?.options ?? [];
  for (const kind of KINDS.filter(({ button }) => button)) {
    setAttribute(kind.button, 'aria-pressed', String(offered.includes(kind.id)));
  }
}

export function buildKinds() {
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
export async function order(button, path, body) {
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

export function askAndDelete(button, path, title) {
  $('confirm-title').textContent = title;
  $('confirm').returnValue = 'no';
  $('confirm').onclose = () => $('confirm').returnValue === 'yes' && order(button, path, { confirm: true });
  $('confirm').showModal();
}

// ---- The link

export function showLink() {
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

export function showAge() {
  const isOld = state.knownAt && (!state.online || state.link !== 'up');
  const seconds = Math.round((performance.now() - state.knownAt) / 1000);
  setText($('age'), isOld ? `${seconds < 100 ? `${seconds} s` : duration(seconds)} old` : '');
}

// ---- All statuses

const statusNames = new Map(); // the API knows statuses by number; the metrics have their names

export function showStatuses() {
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

export async function openStatuses() {
  if (!statusNames.size) {
    const text = await fetch('/metrics').then((answer) => (answer.ok ? answer.text() : ''), () => '');
    for (const [, name, id] of text.matchAll(/^zv_status_(\w+)\{status="(\d+)"\}/gm)) {
      statusNames.set(id, name);
    }
    $('statuses').querySelector('tbody').replaceChildren();
  }
  showStatuses();
}
