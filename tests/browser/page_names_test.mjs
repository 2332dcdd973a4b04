// Names that could do harm, and reports with nothing in them.

import assert from 'node:assert/strict';
import { test } from 'node:test';

import { converted, expectQuiet, flank, saved, shownRows, usePages } from './pages.mjs';
import { searchText } from './programs.mjs';

const { folder, open, report } = usePages();

test('names of records do nothing', async () => {
  const names = ['<script>alert(1)</script>', '</script><img/src=x/onerror=alert(2)>', 'line\u2028end',
    '"\'><b>bold', '@TABLE-DATA@', '\ufeffmark', 'a:1-5', '__proto__', 'constructor'];
  const array = 'CAG'.repeat(12);
  const text = names.map((name) => `>${name} more\n${flank}${array}${flank}\n`).join('');
  const hostile = searchText(folder, text, []);
  const { page, ...rest } = await open(hostile);
  page.on('dialog', () => assert.fail('a script of a name ran'));
  assert.deepEqual(await shownRows(page, 'record'), names);
  await page.focus('#density-chart');
  await page.mouse.move(600, 300);
  for (let place = 0; place < names.length; ++place) {
    await page.click(`#row-${place}`);
    assert.ok((await page.textContent('#repeat-title')).startsWith(names[place]));
    await page.keyboard.press('Escape');
  }
  await page.fill('[name=record]', 'a:1-5');
  await page.press('[name=record]', 'Enter');
  assert.deepEqual(await shownRows(page, 'record'), ['a:1-5']);
  await page.click('#filters [type=reset]');
  await page.waitForFunction(() => document.getElementById('count').textContent.startsWith('9'));
  assert.equal(await page.$('b, img'), null);
  assert.equal(await page.$$eval('script', (scripts) => scripts.length), 3);
  expectQuiet({ page, ...rest });
  assert.deepEqual(await saved(page, 'tsv'), converted('tsv', hostile));

  // Nor could anything that got in: the page lets no other script run, and asks nobody.
  const asked = await page.evaluate(() => fetch('data:text/plain,x').then(() => 'got it', () => 'refused'));
  assert.equal(asked, 'refused');
  await page.evaluate(() => {
    const script = document.createElement('script');
    script.textContent = 'window.hasRun = true';
    document.body.append(script);
  });
  assert.equal(await page.evaluate(() => window.hasRun), undefined);
});

test('names keep bytes that are no UTF-8', async () => {
  const bytes = Buffer.concat([Buffer.from('>caf'), Buffer.from([0xe9, 0xff]), Buffer.from(' latin\n')]);
  const hostile = searchText(folder, Buffer.concat([bytes, Buffer.from(`${flank}${'CAG'.repeat(12)}\n`)]));
  const { page, ...rest } = await open(hostile);
  assert.deepEqual(await shownRows(page, 'record'), ['caf\ufffd\ufffd']);
  const file = await saved(page, 'bed');
  assert.ok(file.includes(Buffer.from([0x0a, 0x63, 0x61, 0x66, 0xe9, 0xff, 0x09])));
  assert.deepEqual(rest.faults, []);
});

test('a report without repeats says so', async () => {
  const { page, ...rest } = await open(searchText(folder, `>bare\n${flank}\n>empty\n`));
  assert.equal(await page.textContent('#count'), '0 of 0 repeats');
  assert.equal(await page.textContent('#unit-chart'), 'There are no repeats.');
  assert.ok(await page.isVisible('#nothing'));
  await page.focus('#table');
  await page.keyboard.press('Enter');
  assert.equal(await page.$eval('#repeat', (dialog) => dialog.open), false);
  expectQuiet({ page, ...rest });
});
