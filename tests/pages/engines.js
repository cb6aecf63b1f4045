// Three browsers behind one interface: Chromium and Firefox, driven by puppeteer, and WebKit, by its WebDriver.
//
// An engine is { name, narrowest, open(file, options), close() }, with the smallest width of its window in pixels; open() shows a page and returns a view of it:
// { evaluate(expression), run(statements), press(selector, text), screenshot(file), close() }.
// Both ways of executing code are the driver's, which the policy of a page doesn't bind.
// Options: width and height of the viewport, dark, scale (device pixels for a pixel), scripts.

'use strict';

const { spawn } = require('child_process');
const fs = require('fs');
const http = require('http');
const os = require('os');
const path = require('path');
const { pathToFileURL } = require('url');

const DEFAULTS = { width: 1000, height: 800, dark: false, scale: 1, scripts: true };

class PuppeteerView {
  constructor(page) { this.page = page; }
  evaluate(expression) { return this.page.evaluate(expression); }
  run(statements) { return this.page.evaluate(statements); }
  async press(selector, text) {
    await this.page.focus(selector);
    await this.page.keyboard.type(text);
  }
  screenshot(file) { return this.page.screenshot({ path: file }); }
  close() { return this.page.close(); }
}

/// Chromium, or Firefox with `browser` "firefox". Firefox reads colour scheme and scripts from its profile, so each
/// combination is a browser of its own.
class PuppeteerEngine {
  constructor(name, browser, executablePath) {
    Object.assign(this, { name, narrowest: 0, browser, executablePath, started: new Map() });
  }

  start({ dark, scripts }) {
    const key = `${dark} ${scripts}`;
    if (!this.started.has(key)) {
      this.started.set(key, require('puppeteer-core').launch({
        browser: this.browser, executablePath: this.executablePath, headless: true, protocolTimeout: 120000,
        args: this.browser === 'chrome' ? ['--no-sandbox', '--disable-gpu', '--disable-background-networking',
                                           '--disable-component-update', '--disable-sync', '--disable-dev-shm-usage'] : [],
        extraPrefsFirefox: { 'javascript.enabled': scripts, 'layout.css.prefers-color-scheme.content-override': dark ? 0 : 1,
                             'browser.safebrowsing.malware.enabled': false, 'network.captive-portal-service.enabled': false,
                             'network.connectivity-service.enabled': false },
      }));
    }
    return this.started.get(key);
  }

  async open(file, options = {}) {
    const all = { ...DEFAULTS, ...options };
    const page = await (await this.start(all)).newPage();
    await page.setViewport({ width: all.width, height: all.height, deviceScaleFactor: all.scale });
    if (this.browser === 'chrome') {
      await page.emulateMediaFeatures([{ name: 'prefers-color-scheme', value: all.dark ? 'dark' : 'light' }]);
      await page.setJavaScriptEnabled(all.scripts);
    }
    await page.goto(pathToFileURL(file).href);
    return new PuppeteerView(page);
  }

  async close() {
    for (const browser of this.started.values()) await (await browser).close();
  }
}

/// WebKit's small browser on a display of its own, since it has no headless mode. The theme of its toolkit decides on
/// light or dark, so each has a driver of its own. It can't scale.
class WebKitEngine {
  constructor() {
    this.name = 'WebKit';
    this.narrowest = 447;
    this.drivers = new Map();  // dark -> { port, process, sessions: scripts -> number }
  }

  async display() {
    if (this.screen) return this.address;
    this.home = fs.mkdtempSync(path.join(os.tmpdir(), 'webkit-'));
    this.screen = spawn('Xvfb', ['-noreset', '-displayfd', '1', '-screen', '0', '1600x1300x24'], { stdio: ['ignore', 'pipe', 'ignore'] });
    this.address = await new Promise((resolve, reject) => {
      this.screen.stdout.once('data', (number) => resolve(':' + String(number).trim()));
      this.screen.once('error', reject);
    });
    return this.address;
  }

  async driver(dark) {
    if (this.drivers.has(dark)) return this.drivers.get(dark);
    const env = { ...process.env, DISPLAY: await this.display(), GDK_BACKEND: 'x11', HOME: this.home, LIBGL_ALWAYS_SOFTWARE: '1',
                  GTK_THEME: dark ? 'Adwaita:dark' : 'Adwaita', WEBKIT_DISABLE_COMPOSITING_MODE: '1',
                  WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS: '1' };
    const port = 20000 + process.pid % 20000 + this.drivers.size;
    this.drivers.set(dark, { port, sessions: new Map(), process: spawn('WebKitWebDriver', [`--port=${port}`], { stdio: 'ignore', env }) });
    for (let tries = 0; tries < 100; ++tries) {
      if (await this.call(port, 'GET', '/status').then(() => true, () => false)) break;
      await new Promise((resolve) => setTimeout(resolve, 100));
    }
    return this.drivers.get(dark);
  }

  call(port, method, address, body = undefined) {
    return new Promise((resolve, reject) => {
      const request = http.request({ host: '127.0.0.1', port, method, path: address, timeout: 60000 }, (answer) => {
        const parts = [];
        answer.on('data', (part) => parts.push(part));
        answer.on('end', () => {
          const { value } = JSON.parse(Buffer.concat(parts).toString());
          if (value && value.error) reject(new Error(`${address}: ${value.message || value.error}`));
          else resolve(value);
        });
      });
      request.on('error', reject);
      request.end(body && JSON.stringify(body));
    });
  }

  async open(file, options = {}) {
    const { width, height, dark, scripts } = { ...DEFAULTS, ...options };
    const { port, sessions } = await this.driver(dark);
    if (!sessions.has(scripts)) {
      const args = ['--automation', ...(scripts ? [] : ['--enable-javascript=false'])];
      const capabilities = { alwaysMatch: { 'webkitgtk:browserOptions': { args } } };
      // A driver has one session at a time.
      for (const { sessionId } of sessions.values()) await this.call(port, 'DELETE', `/session/${sessionId}`);
      sessions.clear();
      sessions.set(scripts, await this.call(port, 'POST', '/session', { capabilities }));
    }
    const { sessionId } = sessions.get(scripts);
    const call = (method, address, body) => this.call(port, method, `/session/${sessionId}${address}`, body);
    await call('POST', '/window/rect', { x: 0, y: 0, width, height });
    await call('POST', '/url', { url: pathToFileURL(file).href });
    const run = (script) => call('POST', '/execute/sync', { script, args: [] });
    return {
      evaluate: (expression) => run(`return (${expression});`),
      run,
      press: async (selector, text) => {
        const element = Object.values(await call('POST', '/element', { using: 'css selector', value: selector }))[0];
        await call('POST', `/element/${element}/value`, { text });
      },
      screenshot: async (to) => fs.writeFileSync(to, Buffer.from(await call('GET', '/screenshot'), 'base64')),
      close: () => call('POST', '/url', { url: 'about:blank' }),
    };
  }

  async close() {
    for (const driver of this.drivers.values()) driver.process.kill();
    if (this.screen) this.screen.kill();
    if (this.home) fs.rmSync(this.home, { recursive: true, force: true, maxRetries: 5, retryDelay: 200 });
  }
}

/// The engines. @param names which ones; all by default.
function engines(names = ['Chromium', 'Firefox', 'WebKit']) {
  const all = [new PuppeteerEngine('Chromium', 'chrome', process.env.CHROMIUM || '/usr/bin/chromium'),
               new PuppeteerEngine('Firefox', 'firefox', process.env.FIREFOX || '/usr/bin/firefox-esr'), new WebKitEngine()];
  return all.filter(({ name }) => names.includes(name));
}

module.exports = { engines };
