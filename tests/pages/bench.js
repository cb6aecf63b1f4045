// Measures pages of 200,000 rows in headless Chromium and prints the figures, with their limits.
//   TEMPLATES=FOLDER node tests/pages/bench.js
// Exit status: 0 when all limits hold, 1 when not. Meant for a quiet machine, so not part of the tests.

'use strict';

const fs = require('fs');
const path = require('path');
const { messageRow, pageOf } = require('./rows');
const { Stage } = require('./stage');

const COUNT = 200000;
const WORDS = 'we meet at noon for lunch tomorrow and then go to the lake with the others if it does not rain'.split(' ');
let bad = 0;

function row(name, value, unit, limit) {
  const met = value <= limit;
  if (!met) bad = 1;
  console.log(`${met ? 'ok    ' : 'MISSED'}  ${name.padEnd(52)} ${value.toFixed(value < 10 ? 1 : 0).padStart(7)} ${unit} (${limit})`);
}

function conversation() {
  let seed = 1;
  const random = (below) => (seed = (seed * 48271) % 2147483647) % below;
  return pageOf('Sms.html', { title: 'Chat', person: 'Name: Ann, Phone: 1' }, Array.from({ length: COUNT }, (_, back) => messageRow({
    kind: random(2) ? 'recv_msg' : 'send_msg', party: 'Ann',
    date: new Date(Date.UTC(2016, 4, 1) - back * 600000).toISOString().slice(0, 19).replace('T', ' '),
    text: Array.from({ length: 2 + random(18) }, () => WORDS[random(WORDS.length)]).join(' ') + (back % 1000 ? '' : ' 😀'),
  })).map((text) => text.replace(/(Date: \S+ \S+) Ann(:<\/div>\r\n<div class="send_msg">)/, '$1 Me$2')));
}

/// Memory in bytes of the biggest process that renders for a stage, without what processes share.
function memoryOf(stage) {
  const sizeOf = (pid) => {
    try {
      const command = fs.readFileSync(`/proc/${pid}/cmdline`, 'utf8');
      if (!command.includes('--type=renderer') || !command.includes(stage.browser.profile)) return 0;
      return fs.readFileSync(`/proc/${pid}/smaps_rollup`, 'utf8').match(/^Pss:\s+(\d+)/m)[1] * 1024;
    } catch {
      return 0;  // it has ended meanwhile
    }
  };
  return Math.max(...fs.readdirSync('/proc').filter((name) => /^\d+$/.test(name)).map(sizeOf));
}

/// The longest time between two frames while the page scrolls by wheel-like steps, in milliseconds.
const LONGEST_FRAME = (pixels, steps) => `new Promise((resolve) => {
  let last = performance.now();
  let longest = 0;
  let step = 0;
  const frame = (now) => {
    longest = Math.max(longest, performance.now() - last);
    last = performance.now();
    if (++step > ${steps}) return resolve(longest);
    scrollBy(0, ${pixels});
    requestAnimationFrame(frame);
  };
  requestAnimationFrame(frame);
})`;

async function benchConversation(stage) {
  const page = conversation();
  const size = Buffer.byteLength(page);
  console.log(`A conversation of ${COUNT} messages, ${(size / 1e6).toFixed(1)} MB`);
  const file = path.join(stage.folder, 'bench.html');
  fs.writeFileSync(file, page);
  await stage.showFile(file, async (tab) => {
    const paint = `performance.getEntriesByName('first-contentful-paint')[0]`;
    await tab.evaluate(`new Promise((resolve) => {
      const look = () => (${paint} ? resolve() : requestAnimationFrame(look));
      look();
    })`);
    row('first screen', await tab.evaluate(`${paint}.startTime`), 'ms', 1000);
    row('longest frame of slow scrolling', await tab.evaluate(LONGEST_FRAME(120, 300)), 'ms', 50);
    row('longest frame of fast scrolling', await tab.evaluate(LONGEST_FRAME(3000, 200)), 'ms', 50);
    row('longest frame of dragging the bar', await tab.evaluate(LONGEST_FRAME(130000, 60)), 'ms', 50);
    row('messages that exist then', await tab.evaluate(`document.querySelectorAll('.message').length`), '  ', 500);
    await tab.clickOn('input[type=search]');
    for (const query of ['t', 'to', 'the lake with', '😀', 'nothing like it', 'date']) {
      row(`search for "${query}"`, await tab.evaluate(`new Promise((resolve) => {
        const box = document.querySelector('input[type=search]');
        const start = performance.now();
        box.value = ${JSON.stringify(query)};
        box.dispatchEvent(new Event('input'));
        requestAnimationFrame(() => setTimeout(() => resolve(performance.now() - start)));
      })`), 'ms', 100);
    }
    row('next hit', await tab.evaluate(`new Promise((resolve) => {
      const start = performance.now();
      document.querySelector('[aria-label="Next hit"]').click();
      requestAnimationFrame(() => setTimeout(() => resolve(performance.now() - start)));
    })`), 'ms', 100);
    await tab.send('HeapProfiler.collectGarbage');
    const { metrics } = await tab.send('Performance.getMetrics');
    const heap = metrics.find(({ name }) => name === 'JSHeapUsedSize').value;
    console.log(`        heap of the script ${(heap / size).toFixed(1)} times the page`);
    row('memory of the page\'s process, times the page', memoryOf(stage) / size, '  ', 10);
  }, { threadTimes: true });
}

async function main() {
  const stage = await Stage.open();
  await benchConversation(stage);
  await stage.close();
  process.exitCode = bad;
}

main().catch((error) => {
  console.log(`FAILED  ${error.stack}`);
  process.exit(1);
});
