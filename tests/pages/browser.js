// Drives a headless Chromium over its debugging pipe: file descriptors 3 and 4, JSON texts that end in NUL.

'use strict';

const { spawn } = require('child_process');
const fs = require('fs');
const os = require('os');
const path = require('path');

const ANSWER_LIMIT = 60000;  // milliseconds; a machine that is busy with other work answers slowly

/// A Chromium with a profile of its own, which close() removes; it logs its use of the network.
class Browser {
  /// Starts one. @param extraFlags further command line switches.
  static async start(extraFlags = []) {
    const browser = new Browser();
    browser.profile = fs.mkdtempSync(path.join(os.tmpdir(), 'pages-profile-'));
    browser.logFile = path.join(browser.profile, 'net-log.json');
    browser.process = spawn(process.env.CHROMIUM || 'chromium', [
      '--headless', '--no-sandbox', '--disable-gpu', '--no-first-run', '--disable-background-networking',
      '--disable-component-update', '--disable-sync', '--disable-dev-shm-usage', '--hide-scrollbars',
      `--user-data-dir=${browser.profile}`, `--log-net-log=${browser.logFile}`, '--net-log-capture-mode=Everything',
      '--remote-debugging-pipe', ...extraFlags, 'about:blank',
    ], { stdio: ['ignore', 'ignore', 'ignore', 'pipe', 'pipe'] });
    browser.exited = new Promise((resolve) => browser.process.once('exit', resolve));
    browser.process.once('error', (error) => browser.fail(error));
    browser.process.once('exit', (code) => browser.fail(new Error(`chromium ended with status ${code}`)));
    browser.process.stdio[3].on('error', (error) => browser.fail(error));
    browser.listen(browser.process.stdio[4]);
    await browser.send('Browser.getVersion');
    return browser;
  }

  constructor() {
    this.nextId = 1;
    this.waiting = new Map();  // id of a command -> its promise
    this.listeners = new Set();
  }

  listen(stream) {
    let pending = [];
    stream.on('data', (chunk) => {
      let start = 0;
      for (let end = chunk.indexOf(0); end >= 0; end = chunk.indexOf(0, start)) {
        pending.push(chunk.subarray(start, end));
        this.take(JSON.parse(Buffer.concat(pending).toString('utf8')));
        pending = [];
        start = end + 1;
      }
      pending.push(chunk.subarray(start));
    });
  }

  take(message) {
    if (!message.id) {
      for (const listener of this.listeners) listener(message);
      return;
    }
    const promise = this.waiting.get(message.id);
    this.waiting.delete(message.id);
    if (!promise) return;
    clearTimeout(promise.timer);
    if (message.error) promise.reject(new Error(`${promise.method}: ${message.error.message}`));
    else promise.resolve(message.result);
  }

  fail(error) {
    for (const promise of this.waiting.values()) {
      clearTimeout(promise.timer);
      promise.reject(error);
    }
    this.waiting.clear();
  }

  send(method, params = {}, sessionId = undefined) {
    const id = this.nextId++;
    return new Promise((resolve, reject) => {
      const timer = setTimeout(() => {
        this.waiting.delete(id);
        reject(new Error(`${method}: no answer within ${ANSWER_LIMIT} ms`));
      }, ANSWER_LIMIT);
      this.waiting.set(id, { method, resolve, reject, timer });
      this.process.stdio[3].write(JSON.stringify({ id, method, params, sessionId }) + '\0');
    });
  }

  /// Opens an empty tab.
  async newTab() {
    const { targetId } = await this.send('Target.createTarget', { url: 'about:blank' });
    const { sessionId } = await this.send('Target.attachToTarget', { targetId, flatten: true });
    const tab = new Tab(this, targetId, sessionId);
    for (const domain of ['Page', 'Runtime', 'Log']) await tab.send(`${domain}.enable`);
    return tab;
  }

  /// Ends the process and returns the text of its network log: every host it looked up and address it spoke to.
  async close() {
    await this.send('Browser.close').catch(() => {});
    const killer = setTimeout(() => this.process.kill('SIGKILL'), 10000);
    await this.exited;
    clearTimeout(killer);
    const log = fs.existsSync(this.logFile) ? fs.readFileSync(this.logFile, 'utf8') : '';
    fs.rmSync(this.profile, { recursive: true, force: true, maxRetries: 5, retryDelay: 200 });
    return log;
  }
}

/// One page of a browser. It records what a page must never do: dialogs and navigation.
class Tab {
  constructor(browser, targetId, sessionId) {
    Object.assign(this, { browser, targetId, sessionId });
    this.dialogs = [];
    this.scripts = true;
    this.visited = [];
    this.messages = [];
    this.listener = (message) => {
      if (message.sessionId !== sessionId) return;
      if (message.method === 'Page.javascriptDialogOpening') {
        this.dialogs.push(message.params.message);
        this.send('Page.handleJavaScriptDialog', { accept: false }).catch(() => {});
      }
      if (message.method === 'Page.frameNavigated') this.visited.push(message.params.frame.url);
      if (message.method === 'Page.frameRequestedNavigation') this.visited.push(message.params.url);
      if (message.method === 'Log.entryAdded') this.messages.push(message.params.entry.text);
      if (message.method === 'Runtime.exceptionThrown')
        this.messages.push(message.params.exceptionDetails.exception?.description || message.params.exceptionDetails.text);
    };
    browser.listeners.add(this.listener);
  }

  send(method, params) {
    return this.browser.send(method, params, this.sessionId);
  }

  /// Loads a page and waits for its load event.
  async open(url) {
    const loaded = this.event('Page.loadEventFired');
    this.visited = [];
    await this.send('Page.navigate', { url });
    await loaded;
  }

  event(method) {
    return new Promise((resolve, reject) => {
      const timer = setTimeout(() => reject(new Error(`${method} did not come`)), ANSWER_LIMIT);
      const listener = (message) => {
        if (message.sessionId !== this.sessionId || message.method !== method) return;
        clearTimeout(timer);
        this.browser.listeners.delete(listener);
        resolve(message.params);
      };
      this.browser.listeners.add(listener);
    });
  }

  /// The value of an expression in the page; promises are awaited.
  async evaluate(expression) {
    const answer = await this.send('Runtime.evaluate', { expression, returnByValue: true, awaitPromise: true });
    if (answer.exceptionDetails)
      throw new Error(answer.exceptionDetails.exception?.description || answer.exceptionDetails.text);
    return answer.result.value;
  }

  /// Returns when no task of the page is due. Scripts are enabled during the call if they are off, because callbacks
  /// don't run otherwise; the page has already been parsed without them.
  async idle() {
    if (!this.scripts) await this.send('Emulation.setScriptExecutionDisabled', { value: false });
    // A page that navigates meanwhile gives no answer; `visited` records the navigation.
    await this.evaluate('new Promise((resolve) => requestIdleCallback(() => resolve()))').catch((error) => {
      if (!/context|navigated|collected/i.test(error.message)) throw error;
    });
    if (!this.scripts) await this.send('Emulation.setScriptExecutionDisabled', { value: true });
  }

  async click(x, y) {
    const at = { x, y, button: 'left', clickCount: 1 };
    await this.send('Input.dispatchMouseEvent', { type: 'mousePressed', ...at });
    await this.send('Input.dispatchMouseEvent', { type: 'mouseReleased', ...at });
  }

  /// Clicks the middle of the first element that a selector finds.
  async clickOn(selector) {
    const [x, y] = await this.evaluate(`(() => {
      const box = document.querySelector(${JSON.stringify(selector)}).getBoundingClientRect();
      return [box.left + box.width / 2, box.top + box.height / 2];
    })()`);
    await this.click(x, y);
  }

  /// Presses a key. @param text what it types, if it types something.
  async press(key, code, windowsVirtualKeyCode, text = undefined) {
    const event = { key, code, windowsVirtualKeyCode, text };
    await this.send('Input.dispatchKeyEvent', { type: text ? 'keyDown' : 'rawKeyDown', ...event });
    await this.send('Input.dispatchKeyEvent', { type: 'keyUp', ...event, text: undefined });
  }

  async type(text) {
    await this.send('Input.insertText', { text });
  }

  /// The content of the page, read through the debugger, which works with scripts off.
  async outerHtml() {
    const { root } = await this.send('DOM.getDocument', { depth: 0 });
    return (await this.send('DOM.getOuterHTML', { nodeId: root.nodeId })).outerHTML;
  }

  async screenshot(file, params = {}) {
    const { data } = await this.send('Page.captureScreenshot', { format: 'png', ...params });
    fs.writeFileSync(file, Buffer.from(data, 'base64'));
  }

  async close() {
    await this.browser.send('Target.closeTarget', { targetId: this.targetId });
    this.browser.listeners.delete(this.listener);
  }
}

module.exports = { Browser };
