// Puts the page together.

import { readDetails, readTable } from './data.js';
import { startDensity } from './density_fields.js';
import { drawOverview } from './overview.js';
import { RepeatList } from './repeat_list.js';
import { Repeats } from './repeats.js';
import { startTheme, switchTheme } from './theme.js';

const byId = (id) => document.getElementById(id);

async function start() {
  startTheme();
  byId('theme').addEventListener('click', switchTheme);
  byId('print').addEventListener('click', () => window.print());
  const data = await readTable();
  const repeats = new Repeats(data);
  repeats.detailsReady = readDetails(data.head.rows).then((details) => (repeats.details = details));
  const list = new RepeatList(repeats);
  drawOverview(data, repeats, list);
  startDensity(data, repeats, list);
  byId('state').hidden = true;
  document.documentElement.dataset.ready = 'yes';
  await repeats.detailsReady;
  document.documentElement.dataset.ready = 'all';
}

document.documentElement.dataset.theme = matchMedia('(prefers-color-scheme: dark)').matches ? 'dark' : 'light';
document.addEventListener('DOMContentLoaded', () => {
  start().catch((error) => {
    byId('state').textContent = typeof DecompressionStream === 'undefined'
      ? 'This browser is too old for the page: it cannot unpack gzip (DecompressionStream).'
      : `The page cannot be shown: ${error.message}`;
    throw error;
  });
});
