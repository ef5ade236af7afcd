// What the page knows of the camera. Events change it first, and then what is shown of it.

export const state = {
  online: false, // with the server
  link: 'down', // of the server with the camera
  camera: {},
  revision: 0, // of the values; what has a later one is newer
  status: {},
  settings: {},
  catalogue: '', // its text, to see whether another one came
  available: {},
  availableRevision: -1,
  schedule: '', // setting 168 in words
  knownAt: 0, // ms since the page's start; when the values were the camera's
};

export const rows = new Map(); // what shows a setting, by its number

export const has = (object) => Object.keys(object).length > 0;

// The members of `next` that are other ones in `known`.
export const differing = (known, next) => Object.keys(next).filter((id) => known[id] !== next[id]);

// What is in the way of every order, in words; empty when nothing is.
export function obstacle() {
  if (!state.online) {
    return 'The connection to the server is lost.';
  }
  return { up: '', down: 'There is no camera.' }[state.link] ?? 'The camera does not answer.';
}
