// Shared by the checks of pages: running checks, a browser, and listeners that no page may reach.

'use strict';

const assert = require('assert');
const fs = require('fs');
const net = require('net');
const os = require('os');
const path = require('path');
const { pathToFileURL } = require('url');
const { Browser } = require('./browser');
const { hostileTexts } = require('./hostile');

const HOST = 'leak-of-a-page.test';
const ARRIVAL_LIMIT = 60000;  // milliseconds after which a request of the control page counts as lost

let failures = 0;

/// One check: its name is a sentence, and it fails by throwing.
async function check(name, body) {
  try {
    await body();
    console.log(`ok      ${name}`);
  } catch (error) {
    ++failures;
    console.log(`FAILED  ${name}\n        ${String(error.message || error).replaceAll('\n', '\n        ')}`);
  }
}

/// The outside world: counts connections and records requests.
class Listener {
  static async start() {
    const listener = new Listener();
    listener.calls = 0;
    listener.paths = new Set();
    listener.waiting = [];
    listener.server = net.createServer((socket) => {
      ++listener.calls;
      socket.on('error', () => {});
      socket.on('data', (head) => {
        listener.paths.add(String(head).split(' ')[1]);
        listener.wake();
      });
      socket.end('HTTP/1.1 204 No Content\r\nConnection: close\r\n\r\n');
      listener.wake();
    });
    await new Promise((resolve) => listener.server.listen(0, '127.0.0.1', resolve));
    listener.address = `http://127.0.0.1:${listener.server.address().port}`;
    return listener;
  }

  wake() {
    for (const look of this.waiting) look();
  }

  /// Returns when the condition holds, which is checked after each connection and request.
  async until(condition, what) {
    await new Promise((resolve, reject) => {
      const timer = setTimeout(() => reject(new Error(`${what} did not arrive`)), ARRIVAL_LIMIT);
      const look = () => {
        if (!condition()) return;
        clearTimeout(timer);
        this.waiting = this.waiting.filter((one) => one !== look);
        resolve();
      };
      this.waiting.push(look);
      look();
    });
  }

  stop() {
    this.server.close();
  }
}

/// A browser, the listener, and a folder for pages.
class Stage {
  static async open() {
    const stage = new Stage();
    stage.folder = fs.mkdtempSync(path.join(os.tmpdir(), 'pages-'));
    stage.listener = await Listener.start();
    stage.texts = hostileTexts(stage.listener.address, HOST);
    stage.browser = await Browser.start();
    stage.controlTab = await stage.browser.newTab();
    return stage;
  }

  /// Calls use with a tab that shows the page, and closes it. @param options scripts, width, features, media;
  /// settle to have all that the page asks for at the listener before; atStart, a script that runs first in it;
  /// threadTimes to have times in the metrics count only while the page's thread runs.
  async show(page, use, options = {}) {
    const file = path.join(this.folder, 'page.html');
    fs.writeFileSync(file, page);
    return this.showFile(file, use, options);
  }

  async showFile(file, use,
                 { scripts = true, width = 1200, features = [], media = '', settle = false, atStart = '',
                   threadTimes = false } = {}) {
    const tab = await this.browser.newTab();
    try {
      await tab.send('Emulation.setDeviceMetricsOverride',
                     { width, height: 800, deviceScaleFactor: 1, mobile: width < 600 });
      await tab.send('Emulation.setEmulatedMedia', { features, media });
      await tab.send('Emulation.setScriptExecutionDisabled', { value: !scripts });
      if (threadTimes) await tab.send('Performance.enable', { timeDomain: 'threadTicks' });
      if (atStart) await tab.send('Page.addScriptToEvaluateOnNewDocument', { source: atStart });
      tab.url = pathToFileURL(file).href;
      tab.scripts = scripts;
      await tab.open(tab.url);
      if (settle) await this.settle(tab);
      return await use(tab);
    } finally {
      await tab.close();
    }
  }

  /// Returns when everything that the page of a tab has requested since it was loaded has reached the listener.
  ///
  /// This proves that nothing was requested, independent of waiting times:
  /// 1. The page has asked for all that it is going to. It has fired its load event, and then an idle callback,
  ///    which runs only when no task of the page is due; a refresh after 0 seconds is such a task.
  /// 2. Its requests have left the browser. A control page is opened after it in the same browser, without a
  ///    fence, and asks a listener of its own by a script, an image, a frame, a preconnect and a refresh, that is
  ///    in the ways of the hostile texts. All of these have to arrive. The requests of the page were made before
  ///    them and take the same way: one network process, one loopback device.
  /// 3. They have been counted. The listeners share the loop of this process, and a connection that was made
  ///    before the last one of the control is handed over in the same turn at the latest.
  /// The checks of the detectors rely on the same call to see what an open page sends.
  async settle(tab) {
    await tab.idle();
    const [requests, connections] = [await Listener.start(), await Listener.start()];
    try {
      const file = path.join(this.folder, 'control.html');
      const paths = ['/script', '/image', '/frame', '/refresh'];
      fs.writeFileSync(file, `<!DOCTYPE html><link rel="preconnect" href="${connections.address}">` +
                             `<script src="${requests.address}/script"></script><img src="${requests.address}/image">` +
                             `<iframe src="${requests.address}/frame"></iframe>` +
                             `<meta http-equiv="refresh" content="0;url=${requests.address}/refresh">`);
      await this.controlTab.send('Page.navigate', { url: pathToFileURL(file).href });
      await requests.until(() => paths.every((one) => requests.paths.has(one)), 'a request of the control page');
      await connections.until(() => connections.calls > 0, 'the preconnect of the control page');
      await new Promise((resolve) => setImmediate(resolve));
    } finally {
      requests.stop();
      connections.stop();
    }
  }

  /// Like show, and throws if the page ran a script, opened a dialog or made a request.
  async showFenced(page, use, options = {}) {
    const before = this.listener.calls;
    await this.show(page, async (tab) => {
      await use(tab);
      assert.deepStrictEqual(tab.dialogs, [], 'dialogs');
      assert.deepStrictEqual(tab.visited.filter((url) => url !== tab.url), [], 'visited other places');
      assert.strictEqual(await tab.evaluate('typeof window.pwned'), 'undefined', 'a script of the content ran');
    }, { settle: true, ...options });
    assert.strictEqual(this.listener.calls - before, 0, 'connections that reached the listener');
  }

  async close() {
    const log = await this.browser.close();
    this.listener.stop();
    fs.rmSync(this.folder, { recursive: true, force: true });
    return log;
  }
}

module.exports = { HOST, Listener, Stage, check, failureCount: () => failures };
