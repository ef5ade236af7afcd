// What the camera calls its things, and how people say them. A camera with other settings needs perhaps a word here.

export const MODE = 144; // the setting
export const SCHEDULE = 168; // takes a time of day, or "off"

export const STATUS = {
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
export const CHARGING = 4; // a battery level
export const CARD_READY = 0;

// Menus, in their order: a setting belongs where its name begins so, and else to the one without a pattern.
export const GROUPS = [
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
export const KINDS = [
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
export const SITUATIONS = {
  '8:1': 'the camera is busy', '10:1': 'recording', '108:1': 'a capture is scheduled',
  '109:1': 'a preset is being made', 65: 'exposure selection', 74: 'the accessory microphone',
  102: 'the sound cage microphone', 110: 'the sound cage',
};

// What is said only while it is so.
export const NOTICES = [
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

// The camera's link, or the page's own where that is lost.
export const LINKS = {
  up: 'Camera connected',
  stale: 'The camera does not answer. These are its last known values.',
  off: 'The camera is switched off. These are its last known values.',
  down: 'No camera',
  gone: 'No camera. These are its last known values.',
  lost: 'Connection to the server lost. Trying again …',
};

// ---- Texts

export const capital = (text) => text.charAt(0).toUpperCase() + text.slice(1);
export const number = (value) => (value === undefined ? '' : value.toLocaleString('en'));
export const plural = (count, word) => `${number(count)} ${word}${count === 1 ? '' : 's'}`;

// "a, b and c"
export function list(texts) {
  return texts.length < 2 ? texts.join('') : `${texts.slice(0, -1).join(', ')} and ${texts.at(-1)}`;
}

export function clock(seconds) {
  const two = (part) => String(Math.floor(part)).padStart(2, '0');
  const hours = seconds >= 3600 ? `${Math.floor(seconds / 3600)}:` : '';
  return `${hours}${two((seconds % 3600) / 60)}:${two(seconds % 60)}`;
}

export function duration(seconds) {
  if (seconds === undefined) {
    return '';
  }
  const minutes = Math.floor(seconds / 60);
  return minutes >= 60 ? `${Math.floor(minutes / 60)} h ${minutes % 60} min` : `${minutes} min ${seconds % 60} s`;
}

// "multi_shot/vellix_iso_min" is "multi shot vellix ISO minimum".
export function inWords(name) {
  return PHRASES[name] ?? name.split(/[/_]/).map((word) => WORDS[word] ?? word).join(' ');
}

export const lastWords = (name) => inWords(name.split('/').at(-1));
