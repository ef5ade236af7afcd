// Requests, and the token that they may need.

import { capital } from './words.js';
import { $, setText } from './view.js';

const ANSWER_MS = 20000; // the server gives up after 15 s

// { ok, status, text, body, detail }; the detail is a sentence where it is not ok. Status 0 is no answer.
export async function request(method, path, body) {
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
    const detail = capital(json.detail ?? answer.statusText);
    return { ok: answer.ok, status: answer.status, text, body: json, detail };
  } catch {
    return { ok: false, status: 0, text: '', body: {}, detail: 'The server does not answer.' };
  }
}

function askToken() {
  if (!$('ask').open) {
    setText($('ask-note'), document.cookie.includes('zvweb_token=') ? 'The token was not accepted.' : '');
    $('ask').showModal();
  }
}

export function keepToken() {
  if ($('token').value) {
    document.cookie = `zvweb_token=${$('token').value}; Path=/; SameSite=Strict`;
  }
  $('token').value = '';
}
