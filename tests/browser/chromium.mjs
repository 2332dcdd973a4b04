// A browser for the tests, and what they want to know of it.

import { chromium } from 'playwright-core';

/** Starts Chromium without a window. It is to be closed by the caller. */
export function launchBrowser() {
  return chromium.launch({
    executablePath: process.env.CHROMIUM,
    args: [
      '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
      '--disable-background-networking', '--disable-component-update', '--disable-sync',
    ],
  });
}

/**
 * Opens an empty page that notes what goes wrong in it.
 * @param browser what `launchBrowser` returned
 * @param options of the browser context, such as `colorScheme` or `viewport`
 * @returns {{page, faults: string[], requests: string[]}} console errors, exceptions and failed
 *   requests; and the addresses that the page asked for
 */
export async function openPage(browser, options = {}) {
  const context = await browser.newContext({ viewport: { width: 1280, height: 800 }, ...options });
  const page = await context.newPage();
  const faults = [];
  const requests = [];
  page.on('console', (message) => {
    if (message.type() === 'error') faults.push(message.text());
  });
  page.on('pageerror', (error) => faults.push(String(error)));
  page.on('requestfailed', (request) => faults.push(`failed: ${request.url()}`));
  page.on('request', (request) => requests.push(request.url()));
  return { page, faults, requests };
}
