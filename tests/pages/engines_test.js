// Checks the pages in Chromium, Firefox and WebKit. Run by tests/pages/run-engines.
//   tests/pages/run-engines [--pictures FOLDER] [ENGINE...]
// With --pictures, it also writes a picture of each page in each engine, width and colour scheme.

'use strict';

const assert = require('assert');
const fs = require('fs');
const os = require('os');
const path = require('path');
const { KINDS, TITLE, message, chatPage } = require('./conversation');
const { engines } = require('./engines');
const { hostileTexts } = require('./hostile');
const { PNG, indexPage } = require('./index');
const { FENCE, asParsed, pageOf, tableRow } = require('./rows');
const { HOST, Listener, check, failureCount } = require('./stage');

const AXE = fs.readFileSync(require.resolve('axe-core/axe.min.js'), 'utf8');
const SCREENS = [390, 800, 1440].flatMap((width) => [false, true].map((dark) => ({ width, dark })));
const ZOOMED = { width: 500, height: 400, scale: 2 };  // a window of 1000 pixels at 200 %
const TABLES = { 'CallHistory.html': 5, 'Notes.html': 3, 'contacts.html': 7 };
const TEXTS = ['See https://example.org/a?b=c, nice', '👍', 'a \ufffc b', 'مرحبا، هل نلتقي غدا؟ 25', 'שלום\nlatin', 'word '.repeat(60),
               'https://example.org/' + 'long'.repeat(80)];

const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'pages-engines-'));

function fileOf(page) {
  const file = path.join(folder, 'page.html');
  fs.writeFileSync(file, page);
  return file;
}

const conversation = () => chatPage(TEXTS.flatMap((text, at) => KINDS.map((kind, one) => message(kind, text, at * 40000 + one))));

const CELLS = {
  'CallHistory.html': (at) => [`Ann Berger ${at}`, `+49 30 ${at}`, '2016-05-01 10:00:00', at % 2 ? 'Incoming' : 'Outgoing', '0'],
  'Notes.html': (at) => [`Note ${at}`, '2016-05-01 10:00:00', 'Milk\nBread\n' + 'word '.repeat(20)],
  'contacts.html': (at) => [`Ann ${at} דנה`, '+49 1<br />+49 2', 'a@example.org\nb@example.org', 'Long Street 5\n10115 Berlin',
                            'https://example.org', '', 'Company'],
};

function pages() {
  const tables = Object.entries(CELLS).map(([page, cells]) =>
    [page, pageOf(page, { title: TITLE }, Array.from({ length: 60 }, (_, at) => tableRow(cells(at))))]);
  const conversations = TEXTS.map((name) => ({ name, number: '+49 30 1', messages: 3 }));
  const folders = [{ path: ['Camera Roll'], files: Array.from({ length: 40 }, (_, at) => `IMG_${at}.PNG`) },
                   { path: ['App Video', 'Some App'], files: ['Film.MOV'] }, { path: ['WhatsApp Attachments'], files: ['Voice.dat'] }];
  return [['Sms.html', conversation()], ...tables, ['index.html', indexPage({ device: 'Phone', conversations, folders })]];
}

/// Calls use with a view of a page, and closes it.
async function show(engine, page, options, use) {
  const view = await engine.open(fileOf(page), options);
  try {
    return await use(view);
  } finally {
    await view.close();
  }
}

/// Long enough for what a page asks for to arrive; the checks of the detectors wait as long.
const settle = () => new Promise((resolve) => setTimeout(resolve, 1500));

async function checkDetectors(engine, listener, texts) {
  const open = (text) => text.replace(FENCE, '<div').replace(/<meta http-equiv="Content-Security-Policy"[^>]*>/, '');
  const hostile = (name) => chatPage([message('recv_msg', texts.find(([one]) => one === name)[1])], 'Sms.html', open);
  await check(`${engine.name}: the checks notice a script and requests of a page without the fence`, async () => {
    await show(engine, hostile('an event handler').replaceAll('alert(1)', ''), {}, async (view) => {
      await settle();
      assert.strictEqual(await view.evaluate('window.pwned'), 1);
    });
    for (const [name, scripts] of [['a remote image', true], ['a remote image', false], ['a meta refresh', false]]) {
      const before = listener.calls;
      await show(engine, hostile(name), { scripts }, settle);
      assert.ok(listener.calls > before, `${name} went unnoticed with scripts ${scripts ? 'on' : 'off'}`);
    }
  });
}

async function checkFence(engine, listener, texts) {
  const chat = chatPage(texts.map(([, text], at) => message(KINDS[at % 4], text, at)));
  const tables = Object.entries(TABLES).map(([page, columns]) => [page, pageOf(page, { title: TITLE }, texts.map(([name, text]) =>
    tableRow(Array.from({ length: columns }, (_, at) => (at === 2 && columns > 3 ? text : at === 1 ? '2016-05-01 10:00:00' : name + text)))))]);
  for (const [name, page] of [['Sms.html', chat], ...tables]) {
    await check(`${engine.name}: ${name} bears all hostile texts, and nothing leaves`, async () => {
      const before = listener.calls;
      await show(engine, page, {}, async (view) => {
        await settle();
        assert.strictEqual(await view.evaluate('typeof window.pwned'), 'undefined');
        assert.match(await view.evaluate('location.href'), /^file:.*page\.html$/);
        const shown = await view.evaluate(`document.querySelector('main').textContent`);
        for (const [one, text] of texts.slice(0, 10)) assert.ok(shown.includes(asParsed(text)), `${one} isn't shown`);
        assert.strictEqual(await view.evaluate(`document.querySelectorAll('main script, main img, main iframe, main form').length`), 0);
      });
      await show(engine, page, { scripts: false }, settle);
      assert.strictEqual(listener.calls, before, 'connections');
    });
  }
}

/// What the front page may load is beside it.
async function checkIndex(engine, listener, texts) {
  await check(`${engine.name}: index.html shows the files beside it, bears hostile texts, and nothing leaves`, async () => {
    fs.mkdirSync(path.join(folder, 'Camera Roll'), { recursive: true });
    fs.writeFileSync(path.join(folder, 'Camera Roll', 'IMG_0.PNG'), PNG);
    const folders = [{ path: ['Camera Roll'], files: ['IMG_0.PNG', `//${listener.address.slice(7)}/a.png`, 'javascript:alert(1).png'] },
                     { path: [listener.address, '..'], files: texts.map(([, text]) => text + '.png') }];
    const page = indexPage({ device: texts[0][1], conversations: texts.map(([, name]) => ({ name, file: name })), folders });
    const before = listener.calls;
    await show(engine, page, {}, async (view) => {
      await view.evaluate(`document.getElementById('pictures').scrollIntoView()`);
      await settle();
      assert.strictEqual(await view.evaluate('typeof window.pwned'), 'undefined');
      assert.match(await view.evaluate('location.href'), /^file:.*page\.html$/);
      assert.ok(await view.evaluate(`Array.from(document.images).some((image) => image.naturalWidth === 1)`), 'no picture shows');
      assert.ok((await view.evaluate(`document.querySelector('.conversations').textContent`)).includes(texts[0][1]));
    });
    await show(engine, page, { scripts: false }, settle);
    assert.strictEqual(listener.calls, before, 'connections');
  });
}

async function checkUse(engine) {
  await check(`${engine.name}: the search of a conversation finds what isn't built`, async () => {
    const many = Array.from({ length: 3000 }, (_, back) => message(back % 2 ? 'send_msg' : 'recv_msg', `Message ${back}`, back * 100));
    await show(engine, chatPage(many), {}, async (view) => {
      assert.ok(await view.evaluate(`document.querySelectorAll('.message').length`) < 500);
      await view.press('input[type=search]', 'message 2345');
      assert.strictEqual(await view.evaluate(`document.querySelector('.count').textContent`), '1 of 1');
      assert.ok(await view.evaluate(`(() => {
        const box = document.querySelector('.current').getBoundingClientRect();
        return box.top > 0 && box.bottom < innerHeight;
      })()`), 'the hit is out of view');
      await view.evaluate(`scrollTo(0, document.documentElement.scrollHeight)`);
      await settle();
      assert.strictEqual(await view.evaluate(`Array.from(document.querySelectorAll('.text')).pop().textContent`), 'Message 2999');
    });
  });
}

/// Chromium and Firefox cut a page of too many device pixels.
async function checkEnd(engine) {
  if (engine.name === 'WebKit') return;
  const count = 200000;
  const contacts = () => pageOf('contacts.html', { title: TITLE }, Array.from({ length: count }, (_, at) =>
    tableRow([`Person ${at}`, `+49 ${at}`, 'a@example.org', 'Street', 'https://example.org', 'Social', 'Company'])));
  const chat = () => chatPage(Array.from({ length: count }, (_, back) => message('recv_msg', `Message ${back}`, back)));
  for (const [name, page, last] of [['contacts.html', contacts, `Person ${count - 1}`], ['Sms.html', chat, `Message ${count - 1}`]]) {
    await check(`${engine.name}: the end of ${count} rows of ${name} can be reached on a phone`, async () => {
      await show(engine, page(), { width: 390, scale: 3 }, async (view) => {
        for (let tries = 0; tries < 3; ++tries) {
          await view.evaluate(`scrollTo(0, document.documentElement.scrollHeight)`);
          await settle();
        }
        const [text, top] = await view.evaluate(`(() => {
          const rows = document.querySelectorAll('.message, tbody tr[role=row]');
          const row = rows[rows.length - 1];
          return [row.textContent, row.getBoundingClientRect().top];
        })()`);
        assert.ok(text.includes(last), text);
        assert.ok(top > 0 && top < 800, `the last row is at ${top}`);
      });
    });
  }
}

/// Violations found by axe, as texts.
async function violationsOf(view) {
  await view.run(AXE);
  await view.evaluate(`void axe.run().then((result) => {
    document.documentElement.dataset.axe = JSON.stringify(result.violations.map(({ id, nodes }) => id + ': ' + nodes[0].html));
  })`);
  for (let tries = 0; tries < 100; ++tries) {
    const found = await view.evaluate('document.documentElement.dataset.axe || ""');
    if (found) return JSON.parse(found);
    await new Promise((resolve) => setTimeout(resolve, 100));
  }
  throw new Error('axe gave no answer');
}

async function checkLooks(engine, pictures) {
  for (const [name, page] of pages()) {
    for (const screen of engine.name === 'WebKit' ? SCREENS : [...SCREENS, ZOOMED]) {
      const what = screen === ZOOMED ? 'at 200 %' : `${screen.width} wide, ${screen.dark ? 'dark' : 'light'}`;
      await check(`${engine.name}: ${name} fits and is accessible, ${what}`, async () => {
        await show(engine, page, screen, async (view) => {
          const [wide, width, dark] = await view.evaluate(
            `[document.documentElement.scrollWidth, innerWidth, matchMedia('(prefers-color-scheme: dark)').matches]`);
          assert.ok(Math.abs(width - Math.max(screen.width, engine.narrowest)) < 20, `the window is ${width} wide`);
          assert.strictEqual(dark, !!screen.dark);
          assert.ok(wide <= width, `it is ${wide} wide in ${width}`);
          if (pictures) await view.screenshot(path.join(pictures, `${engine.name}-${name}-${what.replace(/\W+/g, '-')}.png`));
          assert.deepStrictEqual(await violationsOf(view), []);
        });
      });
    }
  }
}

async function main() {
  const names = process.argv.slice(2);
  const pictures = names[0] === '--pictures' ? names.splice(0, 2)[1] : '';
  if (pictures) fs.mkdirSync(pictures, { recursive: true });
  const listener = await Listener.start();
  const texts = hostileTexts(listener.address, HOST);
  for (const engine of engines(names.length ? names : undefined)) {
    try {
      await checkDetectors(engine, listener, texts);
      await checkFence(engine, listener, texts);
      await checkIndex(engine, listener, texts);
      await checkUse(engine);
      await checkEnd(engine);
      await checkLooks(engine, pictures);
    } finally {
      await engine.close();
    }
  }
  listener.stop();
  fs.rmSync(folder, { recursive: true });
  const failures = failureCount();
  console.log(failures ? `${failures} checks failed` : 'all checks passed');
  process.exit(failures ? 1 : 0);
}

main().catch((error) => {
  console.log(`FAILED  ${error.stack}`);
  process.exit(1);
});
