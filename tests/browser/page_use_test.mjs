// The page under the hand: mouse, keyboard, zoom, colours, a phone.

import assert from 'node:assert/strict';
import { test } from 'node:test';

import { converted, expectQuiet, grouped, shownRows, usePages } from './pages.mjs';
import { runTools } from './programs.mjs';

const { open, report } = usePages();

test('a repeat shows its alignment, and its edits by colour and by marks', async () => {
  const { page, ...rest } = await open(report);
  const rows = converted('tsv', report).toString().trim().split('\n').slice(1).map((row) => row.split('\t'));
  const kinds = { mismatch: 11, insertion: 12, deletion: 13, unknown: 14 };
  const marks = { mismatch: '×', insertion: '+', deletion: '−', unknown: '?' };
  for (const [kind, column] of Object.entries(kinds)) {
    const place = rows.findIndex((row) => Number(row[column]) > 0);
    const row = rows[place];
    await page.fill('[name=record]', `${row[0]}:${row[1]}`);
    await page.press('[name=record]', 'Enter');
    const first = (await shownRows(page, 'start')).findIndex((text) => text === grouped(Number(row[1])));
    await page.click(`#row-${first}`);
    const lines = (await page.$$eval('#repeat .alignment pre', (blocks) => blocks.map((block) => block.textContent)))
      .map((text) => text.split('\n'));
    const joined = (i) => lines.map((block) => block[i].replace(/\d+/g, '').replace(/ /g, '')).join('');
    assert.equal(joined(0), row[16]);
    assert.equal(joined(2), row[17]);
    const edits = await page.$$eval(`#repeat .alignment .${kind}`, (spans) => spans.map((span) => span.textContent));
    assert.equal(edits.length % 3, 0);
    assert.equal(edits[1], marks[kind].repeat(edits[1].length));
    const colours = await page.$eval(`#repeat .alignment .${kind}`, (span) =>
      [getComputedStyle(span).backgroundColor, getComputedStyle(span.parentElement).backgroundColor]);
    assert.notEqual(colours[0], colours[1]);
    await page.keyboard.press('Escape');
    assert.equal(await page.$eval('#repeat', (dialog) => dialog.open), false);
  }
  expectQuiet({ page, ...rest });
});

test('the keyboard alone is enough for the table', async () => {
  const { page, ...rest } = await open(report);
  await page.focus('#table');
  const active = () => page.$eval('#table', (grid) => grid.getAttribute('aria-activedescendant'));
  assert.equal(await active(), 'row-0');
  for (const key of ['ArrowDown', 'ArrowDown', 'ArrowUp', 'ArrowDown']) await page.keyboard.press(key);
  assert.equal(await active(), 'row-2');
  await page.keyboard.press('End');
  const last = Number((await page.textContent('#count')).split(' ')[0].replace(/,/g, '')) - 1;
  assert.equal(await active(), `row-${last}`);
  assert.ok(await page.isVisible(`#row-${last}`));
  await page.keyboard.press('PageUp');
  assert.ok(Number((await active()).slice(4)) < last - 5);
  await page.keyboard.press('Home');
  await page.keyboard.press('Enter');
  const title = await page.textContent('#repeat-title');
  assert.match(title, /^chr1: /);
  await page.keyboard.press('ArrowRight');
  assert.notEqual(await page.textContent('#repeat-title'), title);
  await page.keyboard.press('Escape');
  assert.equal(await page.evaluate(() => document.activeElement.id), 'table');
  assert.equal(await active(), 'row-1');
  const outline = await page.$eval('#row-1', (row) => getComputedStyle(row).outlineStyle);
  assert.equal(outline, 'solid');
  expectQuiet({ page, ...rest });
});

test('the density goes from all records to one window, and lists what it shows', async () => {
  const { page, ...rest } = await open(report);
  const range = () => page.textContent('#range');
  assert.equal(await range(), 'chr1 to bare (5 records)');
  assert.ok(await page.isDisabled('[data-do=list]'));
  await page.selectOption('#density-record', { label: 'chr3' });
  const length = JSON.parse(runTools('stats', '--to', 'json', report)).records[2].length;
  assert.equal(await range(), `chr3: 1–${grouped(length)}`);
  await page.focus('#density-chart');
  for (let i = 0; i < 14; ++i) await page.keyboard.press('+');
  const [, begin, end] = /: ([\d,]+)–([\d,]+)$/.exec(await range());
  const window = Number(/windows of ([\d,]+) bp/.exec(await page.textContent('#window'))[1].replace(/,/g, ''));
  assert.equal(Number(end.replace(/,/g, '')) - Number(begin.replace(/,/g, '')) + 1, window);
  await page.keyboard.press('0');
  assert.equal(await range(), 'chr1 to bare (5 records)');

  await page.fill('#density-place', 'chr2:100-400');
  await page.press('#density-place', 'Enter');
  assert.equal(await range(), 'chr2: 100–400');
  await page.click('[data-do=list]');
  const rows = converted('bed', '--sequence', 'chr2', report).toString().trim().split('\n').slice(1)
    .map((row) => row.split('\t')).filter((row) => Number(row[1]) < 400 && Number(row[2]) >= 100);
  assert.ok(rows.length > 1);
  assert.deepEqual(await shownRows(page, 'end'), rows.map((row) => grouped(Number(row[2]))));

  await page.fill('#density-place', 'nowhere');
  await page.press('#density-place', 'Enter');
  assert.equal(await page.$eval('#density-place', (field) => field.checkValidity()), false);
  expectQuiet({ page, ...rest });
});

test('light and dark follow the system and the switch', async () => {
  for (const [colorScheme, other] of [['dark', 'light'], ['light', 'dark']]) {
    const { page, ...rest } = await open(report, { colorScheme });
    const background = () => page.$eval('body', (body) => getComputedStyle(body).backgroundColor);
    const before = await background();
    const theme = () => page.$eval('html', (root) => root.dataset.theme);
    assert.equal(await theme(), colorScheme);
    await page.click('#theme');
    assert.equal(await theme(), other);
    assert.notEqual(await background(), before);
    await page.emulateMedia({ media: 'print' });
    await page.waitForFunction(() => document.documentElement.dataset.theme === 'light');
    assert.equal(await page.isVisible('#filters'), false);
    expectQuiet({ page, ...rest });
  }
});

test('a print has a few pages, however many repeats there are', async () => {
  const { page, ...rest } = await open(report);
  const pdf = (await page.pdf({ format: 'A4', printBackground: true })).toString('latin1');
  const pages = pdf.match(/\/Type\s*\/Page\b/g).length;
  assert.ok(pages >= 2 && pages <= 5, `${pages} pages`);
  expectQuiet({ page, ...rest });
});

test('the page fits a phone', async () => {
  const { page, ...rest } = await open(report, { viewport: { width: 390, height: 800 } });
  assert.equal(await page.evaluate(() => document.documentElement.scrollWidth), 390);
  await page.click('#row-0');
  assert.ok(await page.isVisible('#repeat .alignment pre'));
  expectQuiet({ page, ...rest });
});
