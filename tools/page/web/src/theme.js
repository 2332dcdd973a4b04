// Light and dark: as the system says until the reader chooses, and always light on paper.

const system = matchMedia('(prefers-color-scheme: dark)');
const paper = matchMedia('print');
let chosen = null;
const listeners = [];

function apply() {
  const isDark = !paper.matches && (chosen ?? (system.matches ? 'dark' : 'light')) === 'dark';
  document.documentElement.dataset.theme = isDark ? 'dark' : 'light';
  for (const listener of listeners) listener();
}

/** Sets the colours, and follows the system and the printer from then on. */
export function startTheme() {
  apply();
  system.addEventListener('change', apply);
  paper.addEventListener('change', apply);
}

/** Changes from light to dark or back. */
export function switchTheme() {
  chosen = document.documentElement.dataset.theme === 'dark' ? 'light' : 'dark';
  apply();
}

/** Calls `listener` whenever the colours have changed. */
export function onTheme(listener) {
  listeners.push(listener);
}

/** Returns a colour of style.css, such as "--accent". */
export function colour(name) {
  return getComputedStyle(document.documentElement).getPropertyValue(name).trim();
}
