// What pages cost, printed as a table:
//
//   run.sh FOLDER QUORIX TOOLS --script measure.mjs REPORT...
//
// REPORTs have absolute names. Each page is written and opened five times; printed are the smallest
// seconds of either, the size, and the seconds that sorting and filtering the table take.

import { spawnSync } from 'node:child_process';
import { statSync } from 'node:fs';
import { basename, join } from 'node:path';
import { pathToFileURL } from 'node:url';

import { launchBrowser, openPage } from './chromium.mjs';
import { makeFolder } from './programs.mjs';

const rounds = 5;

/** Returns the seconds that a command takes. */
function secondsOf(program, args) {
  const begin = performance.now();
  const { status } = spawnSync(program, args, { stdio: 'inherit' });
  if (status !== 0) throw new Error(`${program} ${args.join(' ')}: status ${status}`);
  return (performance.now() - begin) / 1000;
}

/** Opens a page. Returns the seconds until it can be used, and those of a sort and a filter. */
async function openAndUse(browser, address) {
  const { page } = await openPage(browser);
  const begin = performance.now();
  await page.goto(address);
  await page.waitForFunction(() => document.documentElement.dataset.ready === 'all');
  const opened = (performance.now() - begin) / 1000;
  const used = await page.evaluate(() => {
    const seconds = (step) => {
      const before = performance.now();
      step();
      return (performance.now() - before) / 1000;
    };
    const sorted = seconds(() => document.querySelector('.cell-copies button').click());
    const motif = document.querySelector('input[name=motif]');
    motif.value = 'AC';
    return { sorted, filtered: seconds(() => motif.dispatchEvent(new Event('input', { bubbles: true }))) };
  });
  await page.context().close();
  return { opened, ...used };
}

const { folder, remove } = makeFolder();
const browser = await launchBrowser();
console.log('| Report | Written, s | Page, MB | Usable, s | Sorted, s | Filtered, s |');
console.log('|---|---:|---:|---:|---:|---:|');
try {
  for (const report of process.argv.slice(2)) {
    const file = join(folder, 'page.html');
    const written = [];
    const use = [];
    for (let i = 0; i < rounds; ++i) {
      written.push(secondsOf(process.env.QUORIX_TOOLS, ['html', '-o', file, report]));
      use.push(await openAndUse(browser, pathToFileURL(file).href));
    }
    const least = (values) => Math.min(...values).toFixed(2);
    const cells = [basename(report), least(written), (statSync(file).size / 1e6).toFixed(1),
      least(use.map((one) => one.opened)), least(use.map((one) => one.sorted)),
      least(use.map((one) => one.filtered))];
    console.log(`| ${cells.join(' | ')} |`);
  }
} finally {
  await browser.close();
  remove();
}
