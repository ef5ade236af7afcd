// The live page of a camera: shows its state and settings, and sets them.
//
// One object holds what is known. The stream of events brings the state and what changes in it; each event changes the
// object first and then what the page shows of it, so that nothing is drawn twice. Names, options and rules all come
// from the API: a camera with other settings needs no change here, but perhaps a word in words.js.

import { SCHEDULE, STATUS } from './words.js';
import { $, mark, say, setText, tell } from './view.js';
import { differing, has, rows, state } from './known.js';
import { keepToken, request } from './server.js';
import { buildRows, readSchedule, showGroups, showOffer, showOnly, showRow, takeSettings } from './settings.js';
import {
  askAndDelete, buildFacts, buildKinds, files, openStatuses, order, showAge, showFacts, showLink, showNow,
  showStatuses,
} from './now.js';

const SILENCE_MS = 20000; // of the stream, until somebody asks whether it still lives
const FIRST_RETRY_MS = 1000;
const LAST_RETRY_MS = 15000;

// ---- What comes in

// Takes new values and shows what differs from the known ones. The first ones are no change.
async function apply(status, settings, isFirst = false) {
  const statuses = differing(state.status, status);
  Object.assign(state.status, status);
  const sentences = await takeSettings(settings, isFirst);
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

// Empty until a camera has told something and its catalogue is here.
function showAll() {
  const isEmpty = !has(state.status) || !rows.size;
  $('empty').hidden = !isEmpty;
  $('now').hidden = isEmpty;
  $('settings').hidden = isEmpty;
  const coming = 'No camera yet. It shows here as soon as it answers.';
  setText($('empty'), state.online ? coming : 'Looking for the camera …');
  showLink();
}

const ON_EVENT = {
  async state({ revision, link, age_ms: age, status, settings }) {
    const isFirst = !has(state.status);
    Object.assign(state, { revision, link, knownAt: has(status) ? performance.now() - age : state.knownAt });
    await apply(status, settings, isFirst);
    showAll();
  },
  async change({ revision, status, settings }) {
    const isFirst = !has(state.status);
    state.revision = revision;
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
      buildKinds();
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

// ---- The stream

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

// ---- Begin

buildFacts();
$('shutter').addEventListener('click', () => order($('shutter'),
  state.status[STATUS.RECORDING] ? 'capture/stop' : 'capture/start'));
$('delete-last').addEventListener('click', () => askAndDelete($('delete-last'), 'media/delete-last',
  'Delete the file that was taken last?'));
$('delete-all').addEventListener('click', () => askAndDelete($('delete-all'), 'media/delete-all',
  `Delete everything on the card, ${files(state.status)}?`));
$('only').addEventListener('change', showOnly);
$('statuses').addEventListener('toggle', openStatuses);
$('ask').addEventListener('close', () => {
  keepToken();
  connect();
});
setInterval(() => {
  showAge();
  listen();
}, 1000);
connect();
