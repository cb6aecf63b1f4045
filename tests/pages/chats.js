// Checks the pages of conversations.

'use strict';

const assert = require('assert');
const { KINDS, TITLE, WHO, PERSON, message, chatPage, readBubbles, assertBubbles } = require('./conversation');
const { FENCE, assertReadable, messageRow, pageOf } = require('./rows');
const { Stage, check } = require('./stage');

const CHATS = ['Sms.html', 'WhatsApp.html'];

/// A message at a time. @param rest fields that differ.
const at = (date, text, rest = {}) => ({ kind: 'recv_msg', party: 'Ann', ...rest, date, text });
const mine = { kind: 'send_msg', party: 'Me' };
const FORGETFUL = { atStart: 'localStorage.clear()' };  // without the order of an earlier visit

async function checkMessages(stage) {
  const messages = [
    message('recv_msg', 'Hi\nthere,  twice  spaced'), message('send_msg', 'Grüße 👍 מה שלומך'), message('del_recv_msg', 'x'),
    message('del_send_msg', 'https://example.org/' + 'long'.repeat(200)), message('recv_msg', ''),
    { ...message('recv_msg', 'no date'), date: '' }, { ...message('recv_msg', 'colons: in: names'), party: 'A: B: Me' },
    message('recv_msg', 'line\r\nends\r\n'), message('recv_msg', 'مرحبا، هل نلتقي غدا؟'),
  ];
  for (const page of CHATS) {
    await check(`${page} shows its messages in their order, received left and sent right`, async () => {
      await stage.showFenced(chatPage(messages, page), async (tab) => {
        assertBubbles(await readBubbles(tab), messages);
        assert.strictEqual(await tab.evaluate(`document.querySelector('h1').textContent`), TITLE);
        assert.strictEqual(await tab.evaluate(`document.querySelector('.person').textContent`), PERSON);
        assert.match(await tab.evaluate(`document.querySelector('.summary').innerText`), /9 messages\s+2 deleted/);
        assert.strictEqual(await tab.evaluate(`document.getElementById('source')`), null);
      });
    });
  }
  await check('The time is beside its bubble, towards the middle', async () => {
    await stage.show(chatPage(messages), async (tab) => {
      const lines = await tab.evaluate(`Array.from(document.querySelectorAll('.line'), (line) => {
        const [bubble, time] = Array.from(line.children, (child) => child.getBoundingClientRect());
        return time && { right: time.left >= bubble.right, left: time.right <= bubble.left,
                         sent: line.firstChild.className.includes('send') };
      }).filter((line) => line)`);
      assert.strictEqual(lines.length, messages.length - 1);
      for (const line of lines) assert.ok(line.sent ? line.left : line.right, JSON.stringify(line));
    });
  });
  await check('Deleted messages look different from those that are not', async () => {
    await stage.show(chatPage(messages), async (tab) => {
      const looks = await tab.evaluate(`${JSON.stringify(KINDS)}.map((kind) => {
        const bubble = document.querySelector('.' + kind);
        const style = getComputedStyle(bubble);
        return [style.borderTopStyle, style.backgroundColor, bubble.firstChild.textContent].join();
      })`);
      assert.notStrictEqual(looks[0], looks[1]);
      assert.notStrictEqual(looks[2], looks[3]);
      assert.notStrictEqual(looks[0], looks[2]);
      for (const look of [looks[1], looks[3]]) assert.match(look, /dashed.*,Deleted$/);
    });
  });
}

async function checkForm(stage) {
  const days = [at('2016-05-02 08:00:00', 'a'), at('2016-05-01 23:59:59', 'b'), at('2016-05-01 23:58:00', 'c', mine),
                at('2016-05-01 10:00:00', 'd', { party: 'Bo' }), at('2016-05-01 09:00:00', 'e', { party: 'Bo' }),
                at('-0044-03-15 12:00:00', 'f'), at('', 'g')];
  await check('Days separate messages, and a name comes once for a run', async () => {
    await stage.show(chatPage(days, 'WhatsApp.html'), async (tab) => {
      const seen = await tab.evaluate(`Array.from(document.querySelectorAll('.day, .party, .text'), (one) => one.textContent)`);
      assert.deepStrictEqual(seen, ['Monday, 2 May 2016', 'Ann', 'a', 'Sunday, 1 May 2016', 'Ann', 'b', 'c', 'Bo', 'd', 'e',
                                    '-0044-03-15', 'Ann', 'f', 'Ann', 'g']);
    });
  });
  await check('The whole date is there on hover and for assistive tools', async () => {
    await stage.show(chatPage(days, 'WhatsApp.html'), async (tab) => {
      assert.deepStrictEqual(await tab.evaluate(`(() => {
        const message = document.querySelectorAll('.message')[1];
        return [message.querySelector('time').title, message.querySelector('.unseen').textContent,
                message.querySelector('time').textContent];
      })()`), ['Sunday, 1 May 2016, 23:59:59 UTC', 'Ann, Sunday, 1 May 2016, 23:59:59 UTC: ', '23:59']);
    });
  });
  for (const [person, who] of [['Name: Ann, Phone: 1', 'Ann'], ['Name: Unknown, Phone: +49 1', '+49 1'], ['Name: , Phone: 2', '2'],
                               ['odd', 'odd']]) {
    await check(`The title of the tab names the person of "${person}"`, async () => {
      await stage.show(pageOf('Sms.html', { title: 'Device', person }, []),
                       async (tab) => assert.strictEqual(await tab.evaluate('document.title'), `${who} – Device`));
    });
  }
  await check('Texts of one to three emoji are large', async () => {
    const large = ['👍', ' 😀😂❤️ ', '👩‍👩‍👧‍👦', '🇩🇪🇫🇷', '👋🏽', '1️⃣', '✌🏽', '☝🏽', '✍🏻', '🕵🏽‍♀️', '⛹🏽‍♂️'];
    const small = ['👍👍👍👍', '👍 ok', '12', '©', '', 'a'];
    await stage.show(chatPage([...large, ...small].map((text) => message('recv_msg', text))), async (tab) => {
      const sizes = await tab.evaluate(`Array.from(document.querySelectorAll('.text'), (one) => parseFloat(getComputedStyle(one).fontSize))`);
      large.forEach((text, one) => assert.ok(sizes[one] > 35, `${text}: ${sizes[one]} px`));
      small.forEach((text, one) => assert.ok(sizes[large.length + one] < 20, `${text}: ${sizes[large.length + one]} px`));
    });
  });
  await check('The object character is an attachment, with the folder of the file', async () => {
    for (const [page, folder] of [['Sms.html', 'Message Attachments'], ['WhatsApp.html', 'WhatsApp Attachments']]) {
      await stage.show(chatPage([message('recv_msg', 'See \ufffc here'), message('recv_msg', '\ufffc')], page), async (tab) => {
        assert.deepStrictEqual(await tab.evaluate(`Array.from(document.querySelectorAll('.text'), (one) => one.textContent)`),
                               [`See Attachment in the folder "${folder}" here`, `Attachment in the folder "${folder}"`]);
        assert.ok((await tab.evaluate(`document.querySelector('.attachment').title`)).includes(folder));
        assert.ok((await tab.evaluate(`document.querySelector('.hint').textContent`)).includes(`"${folder}"`));
      });
    }
    await stage.show(chatPage([message('recv_msg', 'none')]),
                     async (tab) => assert.strictEqual(await tab.evaluate(`document.querySelector('.hint')`), null));
  });
  await check('A text from right to left starts at the right of its bubble', async () => {
    await stage.show(chatPage([message('recv_msg', 'שלום\nlatin line, which is much the longer one')]), async (tab) => {
      const gap = await tab.evaluate(`(() => {
        const text = document.querySelector('.text').firstChild;
        const box = text.parentNode.getBoundingClientRect();
        const side = (from, to) => {
          const range = document.createRange();
          range.setStart(text, from);
          range.setEnd(text, to);
          return range.getBoundingClientRect();
        };
        return { hebrew: box.right - side(0, 4).right, latin: side(5, 10).left - box.left };
      })()`);
      assert.ok(gap.hebrew < 20 && gap.latin < 20, JSON.stringify(gap));
    });
  });
  await check('A name from right to left keeps a gap to the number', async () => {
    await stage.show(pageOf('Sms.html', { title: TITLE, person: 'Name: דנה, Phone: +972 1' }, []), async (tab) => {
      const [name, label] = await tab.evaluate(`Array.from(document.querySelectorAll('.person > span:not(.unseen)'), (one) => {
        const box = one.getBoundingClientRect();
        return [box.left, box.right];
      })`);
      assert.ok(label[0] - name[1] > 10, JSON.stringify([name, label]));
    });
  });
  await check('A page that was cut short shows its raw text', async () => {
    const page = chatPage([message('recv_msg', 'Hi\nthere')]);
    await stage.show(page.slice(0, page.indexOf('<!--end-of-content-->', page.indexOf(FENCE))),
                     (tab) => assertReadable(tab, ['Hi\nthere', TITLE]));
  });
  await check('A page without messages says so', async () => {
    await stage.show(chatPage([]), (tab) => assertReadable(tab, ['No messages.', TITLE]));
  });
  await check('Text that is no message is kept', async () => {
    await stage.show(pageOf('Sms.html', { title: TITLE, person: PERSON }, ['stray <b>text\r\n']),
                     (tab) => assertReadable(tab, ['stray <b>text']));
  });
}

async function checkLinks(stage) {
  const texts = {
    'See https://example.org/a_(b)?c=d#e.': ['https://example.org/a_(b)?c=d#e'],
    '(http://example.org/x), and HTTPS://EXAMPLE.ORG!': ['http://example.org/x', 'https://example.org/'],
    'https://bücher.example/ü': ['https://xn--bcher-kva.example/%C3%BC'],
    'https://user@evil.example/': ['https://user@evil.example/'],
    'http://a/b_(x)_(y), (http://a/(b)) http://a/b).': ['http://a/b_(x)_(y)', 'http://a/(b)', 'http://a/b'],
    'https://a.example/\u202egpj.exe': ['https://a.example/'],
    'https://a.example/"onclick="x" <b>': ['https://a.example/'],
    'javascript:alert(1) data:text/html,x file:///etc/passwd ftp://a.b vbscript:x': [],
    'https:// http://[ https://exa mple': ['https://exa/'],
    'www.example.org': [],
  };
  await check('Only whole addresses of the web become links, with their true target, and none is loaded', async () => {
    const messages = Object.keys(texts).map((text) => message('recv_msg', text));
    await stage.showFenced(chatPage(messages), async (tab) => {
      assertBubbles(await readBubbles(tab), messages);
      const links = await tab.evaluate(`Array.from(document.querySelectorAll('.text'), (text) =>
        Array.from(text.querySelectorAll('a'), (link) => [link.href, link.title, link.rel, link.target]))`);
      assert.deepStrictEqual(links, Object.values(texts).map((targets) =>
        targets.map((target) => [target, target, 'noopener noreferrer', '_blank'])));
    });
  });
  await check('An address behind a control of direction reads as its target', async () => {
    await stage.show(chatPage([message('recv_msg', '\u202ehttp://evil.example/moc.knab//:ptth')]), async (tab) => {
      const [first, last] = await tab.evaluate(`(() => {
        const text = document.querySelector('.text a').firstChild;
        return [0, text.length - 1].map((at) => {
          const range = document.createRange();
          range.setStart(text, at);
          range.setEnd(text, at + 1);
          return range.getBoundingClientRect().left;
        });
      })()`);
      assert.ok(first < last, `it starts at ${first} and ends at ${last}`);
    });
  });
  await check('Texts full of punctuation, links and hits are shown at once', async () => {
    const texts = ['http://a/' + '.'.repeat(200000) + 'a', 'http://a.b '.repeat(20000)];
    await stage.show(chatPage(texts.map((text) => message('recv_msg', text))), async (tab) => {
      await tab.clickOn('input[type=search]');
      const cost = await tab.evaluate(`(() => {
        const start = performance.now();
        new Marker('http://a.b '.repeat(20000), 'h');
        appendRich(document.createElement('div'), ${JSON.stringify('http://a/')} + '.'.repeat(200000) + 'a', 'h', '');
        appendRich(document.createElement('div'), 'http://a.b '.repeat(20000), 'h', '');
        return performance.now() - start;
      })()`);
      assert.ok(cost < 3000, `${cost} ms`);  // a quadratic way took minutes
    });
  });
  await check('A click on a link opens it in another tab, and this page stays', async () => {
    const own = await Stage.open();
    try {
      await own.show(chatPage([message('recv_msg', `Go to ${own.listener.address}/clicked`)]), async (tab) => {
        assert.strictEqual(own.listener.calls, 0, 'it was loaded without a click');
        await tab.clickOn('.text a');
        await own.listener.until(() => own.listener.paths.has('/clicked'), 'the click');
        assert.strictEqual(await tab.evaluate('location.href'), tab.url);
      }, { settle: true });
    } finally {
      await own.close();
    }
  });
}

/// Long enough that most messages aren't built: one a quarter of an hour, from May back to March.
const LONG = Array.from({ length: 6000 }, (_, back) => {
  const date = new Date(Date.UTC(2016, 4, 1, 12) - back * 900000).toISOString().slice(0, 19).replace('T', ' ');
  return at(date, `Message ${back}${back % 1000 === 500 ? ' with a needle' : ''}`, back % 2 ? mine : {});
});

const shownTexts = (tab) => tab.evaluate(`Array.from(document.querySelectorAll('.message')).filter((message) => {
  const box = message.getBoundingClientRect();
  return box.bottom > document.querySelector('.tools').getBoundingClientRect().bottom + 4 && box.top < innerHeight;
}).map((message) => message.querySelector('.text').textContent)`);
const countText = (tab) => tab.evaluate(`document.querySelector('.count').textContent`);
const enter = (tab) => tab.press('Enter', 'Enter', 13, '\r');

async function checkSearch(stage) {
  await check('The search goes through all messages, marks its hits and counts them', async () => {
    await stage.show(chatPage(LONG), async (tab) => {
      await tab.clickOn('input[type=search]');
      await tab.type('NEEDLE');
      for (const hit of [500, 1500, 2500, 3500, 4500, 5500, 500]) {
        assert.strictEqual(await countText(tab), `${(hit + 500) / 1000} of 6`);
        assert.ok((await shownTexts(tab)).includes(`Message ${hit} with a needle`), `${hit} is not in view`);
        assert.deepStrictEqual(await tab.evaluate(`Array.from(document.querySelectorAll('.current mark'), (mark) => mark.textContent)`), ['needle']);
        await enter(tab);
      }
      await tab.clickOn('[aria-label="Previous hit"]');
      assert.strictEqual(await countText(tab), '1 of 6');
      await tab.clickOn('[aria-label="Previous hit"]');
      assert.ok((await shownTexts(tab)).includes('Message 5500 with a needle'));
      await tab.clickOn('.order');
      assert.strictEqual(await countText(tab), '1 of 6');
      await tab.clickOn('[aria-label="Next hit"]');
      assert.ok((await shownTexts(tab)).includes('Message 4500 with a needle'));
      await tab.clickOn('input[type=search]');
      await tab.press('Escape', 'Escape', 27);
      assert.deepStrictEqual([await countText(tab), await tab.evaluate(`document.querySelectorAll('mark').length`)], ['', 0]);
      assert.deepStrictEqual(tab.messages, []);
    }, FORGETFUL);
  });
  const texts = ['Date', 'İstanbul and ΟΔΟΣ', 'a https://example.org/path b', 'aaa', 'one</div>', 'last 2016-05-01'];
  const hits = { 'date': [0], 'DIV': [4], 'class': [], '2016': [5], 'ist': [1], 'istan': [1], 'οδος': [1], 'b': [1, 2],
                 'a https': [2], 'aa': [3], '\ufffc': [], 'Ann': [], 'nothing': [] };
  for (const [query, found] of Object.entries(hits)) {
    await check(`A search for "${query}" finds texts, and nothing of the rows around them`, async () => {
      await stage.show(chatPage(texts.map((text) => message('recv_msg', text))), async (tab) => {
        await tab.clickOn('input[type=search]');
        await tab.type(query);
        assert.strictEqual(await countText(tab), found.length ? `1 of ${found.length}` : 'Not found');
        assert.deepStrictEqual(await tab.evaluate(`Array.from(document.querySelectorAll('.message:has(mark)'), (one) => Number(one.dataset.at))`),
                               found);
        const marked = await tab.evaluate(`Array.from(document.querySelectorAll('.current mark'), (mark) => mark.textContent).join('')`);
        if (found.length) assert.strictEqual(marked.length % query.length, 0, marked);
      }, FORGETFUL);
    });
  }
}

async function checkMarkedAttachments(stage) {
  await check('A hit in attachments leaves the text around them as it is', async () => {
    const messages = ['\ufffc\ufffcab', 'a\ufffc\ufffc\ufffc', 'x\ufffc'].map((text) => message('recv_msg', text));
    await stage.show(chatPage(messages), async (tab) => {
      for (const query of ['\ufffc', '\ufffc\ufffc', '\ufffca', 'a\ufffc']) {
        await tab.evaluate(`(() => {
          const box = document.querySelector('input[type=search]');
          box.value = ${JSON.stringify(query)};
          box.dispatchEvent(new Event('input'));
        })()`);
        assertBubbles(await readBubbles(tab), messages);
        assert.strictEqual(await tab.evaluate(`document.querySelectorAll('mark:empty').length`), 0);
      }
    }, FORGETFUL);
  });
}

async function checkPlaces(stage) {
  await check('Newest and oldest first: the message at the top stays in view', async () => {
    await stage.show(chatPage(LONG), async (tab) => {
      assert.strictEqual((await shownTexts(tab))[0], 'Message 0');
      await tab.clickOn('.order');
      assert.strictEqual((await shownTexts(tab))[0], 'Message 5999');
      assert.strictEqual(await tab.evaluate(`document.querySelector('.order').textContent`), 'Oldest first');
      await tab.evaluate(`scrollTo(0, document.documentElement.scrollHeight / 3)`);
      await tab.idle();
      const [top] = await shownTexts(tab);
      await tab.clickOn('.order');
      assert.ok((await shownTexts(tab)).slice(0, 3).includes(top), `${top} has gone`);
    }, FORGETFUL);
  });
  await check('The order is kept for the next visit, unless the browser keeps nothing', async () => {
    const order = (tab) => tab.evaluate(`document.querySelector('.order').textContent`);
    const refusing = { atStart: `Object.defineProperty(window, 'localStorage', { get() { throw new Error('refused'); } })` };
    for (const [options, later] of [[{}, 'Oldest first'], [refusing, 'Newest first']]) {
      await stage.show(chatPage(LONG), async (tab) => {
        if (options !== refusing) await tab.evaluate('localStorage.clear()');
        await tab.open(tab.url);
        assert.strictEqual(await order(tab), 'Newest first');
        await tab.clickOn('.order');
        assert.deepStrictEqual([await order(tab), tab.messages], ['Oldest first', []]);
        // In the same tab, since what a page stores takes a while to reach others.
        await tab.open(tab.url);
        assert.strictEqual(await order(tab), later);
        if (options !== refusing) await tab.evaluate('localStorage.clear()');
      }, options);
    }
  });
  await check('The list of months counts messages and leads to them', async () => {
    await stage.show(chatPage(LONG), async (tab) => {
      const open = () => tab.clickOn('.buttons button');
      await open();
      assert.deepStrictEqual(await tab.evaluate(`Array.from(document.querySelectorAll('.months *'), (one) =>
        one.childElementCount ? '' : one.textContent).filter((text) => text)`),
      ['2016', 'May 2016 (49)', 'April 2016 (2880)', 'March 2016 (2976)', 'February 2016 (95)']);
      await tab.clickOn('.months li:nth-child(3) button');
      assert.strictEqual(await tab.evaluate(`document.querySelector('dialog').open`), false);
      assert.strictEqual((await shownTexts(tab))[0], 'Message 2929');
      await open();
      await tab.evaluate(`document.querySelector('[type=date]').value = '2016-04-20'`);
      await tab.clickOn('.jump-day button');
      // The last message of a day comes first.
      assert.strictEqual((await shownTexts(tab))[0], `Message ${LONG.findIndex(({ date }) => date.startsWith('2016-04-20'))}`);
      await tab.clickOn('.order');
      await open();
      await tab.clickOn('.months li:nth-child(2) button');
      assert.strictEqual((await shownTexts(tab))[0], `Message ${LONG.findLastIndex(({ date }) => date.startsWith('2016-04'))}`);
      assert.deepStrictEqual(tab.messages, []);
    }, FORGETFUL);
  });
  await check('Wherever one scrolls, messages are there and in order', async () => {
    await stage.show(chatPage(LONG), async (tab) => {
      for (const part of [0.9, 0.1, 0.5, 0.52, 0.48, 1, 0]) {
        await tab.evaluate(`new Promise((resolve) => {
          scrollTo(0, document.documentElement.scrollHeight * ${part});
          requestAnimationFrame(() => setTimeout(resolve));
        })`);
        const numbers = (await shownTexts(tab)).map((text) => parseInt(text.slice(8), 10));
        assert.ok(numbers.length >= 4, `${numbers.length} messages at ${part}`);
        numbers.forEach((number, one) => assert.strictEqual(number, numbers[0] + one));
        assert.ok(await tab.evaluate(`document.querySelectorAll('.message').length`) < 400);
      }
    }, FORGETFUL);
  });
  await check('The keyboard alone searches, jumps and turns the order', async () => {
    await stage.show(chatPage(LONG), async (tab) => {
      const tabKey = () => tab.press('Tab', 'Tab', 9);
      const focused = () => tab.evaluate(`document.activeElement.getAttribute('aria-label') || document.activeElement.textContent`);
      const order = [];
      for (let step = 0; step < 4; ++step) {
        await tabKey();
        order.push(await focused());
      }
      assert.deepStrictEqual(order, ['Search the messages', 'Go to…', 'Newest first', 'Print…']);
      await tab.press('Tab', 'Tab', 9);
      await tab.evaluate(`document.querySelector('.buttons button').focus()`);
      await enter(tab);
      assert.strictEqual(await tab.evaluate(`document.querySelector('dialog').open`), true);
      await tab.press('Escape', 'Escape', 27);
      assert.strictEqual(await tab.evaluate(`document.querySelector('dialog').open`), false);
      assert.strictEqual(await focused(), 'Go to…');
    }, FORGETFUL);
  });
}

async function checkNames(stage) {
  for (const party of ['Bob</div>', 'B</div>\n<div>ob', 'x'.repeat(5000), 'a: b:', '</div>:</div>', '']) {
    await check(`A sender called "${party.slice(0, 20)}" keeps the messages apart`, async () => {
      const messages = [at('2016-05-03 10:00:00', 'mine', mine), at('2016-05-02 10:00:00', 'theirs', { party }), at('2016-05-01 10:00:00', 'mine', mine)];
      await stage.showFenced(chatPage(messages, 'WhatsApp.html'), async (tab) => assertBubbles(await readBubbles(tab), messages));
    });
  }
}

async function checkDoubt(stage) {
  const row = (fields) => messageRow(fields).replace(/<\/div>\r\n$/, '').replaceAll('\r\n', '\n');
  const plain = [at('2016-05-03 10:00:00', 'c'), at('2016-05-02 10:00:00', 'b', mine), at('2016-05-01 10:00:00', 'a')];
  const inject = (fields) => [plain[0], { ...plain[1], text: 'Hi</div>\n' + row(fields) }, plain[2]];
  const cases = [
    ['is as the exporter writes it', plain, false, false],
    ['has two messages of one second', [plain[0], plain[0], plain[2]], false, false],
    ['holds a row of a later time', inject(at('2016-05-04 10:00:00', 'x')), true, true],
    ['holds a row of another person', inject(at('2016-05-02 09:00:00', 'x', { party: 'Bank' })), true, false],
    ['holds a row of the owner under another name', inject(at('2016-05-02 09:00:00', 'x', { kind: 'send_msg', party: 'I' })), true, true],
    ['holds a part of a row', [plain[0], { ...plain[1], text: 'Hi <div class="date">Date: ' }], true, true],
    // Required: nothing is escaped, so this one is like two messages in every way.
    ['holds a row that fits', inject(at('2016-05-02 09:00:00', 'x')), false, false],
  ];
  for (const [name, messages, inMessages, inChats] of cases) {
    for (const [page, doubtful] of [['Sms.html', inMessages], ['WhatsApp.html', inChats]]) {
      await check(`${page} ${doubtful ? 'warns' : "doesn't warn"} when a conversation ${name}`, async () => {
        await stage.show(chatPage(messages, page), async (tab) =>
          assert.strictEqual(await tab.evaluate(`!!document.querySelector('.doubtful')`), doubtful));
      });
    }
  }
}

async function checkPaper(stage) {
  const pagesOf = (data) => Buffer.from(data, 'base64').toString('latin1').match(/\/Type\s*\/Page\b/g).length;
  await check('Paper holds 20,000 messages on at most 500 pages of A4', async () => {
    const words = 'we meet at noon for lunch tomorrow and then go to the lake with the others if it does not rain'.split(' ');
    const many = Array.from({ length: 20000 }, (_, back) => ({
      ...LONG[back % LONG.length], text: words.slice(0, 3 + back % 18).join(' '),
      date: new Date(Date.UTC(2016, 4, 1) - back * 4000000).toISOString().slice(0, 19).replace('T', ' '),
    }));
    await stage.show(chatPage(many), async (tab) => {
      const { data } = await tab.send('Page.printToPDF', { paperWidth: 8.27, paperHeight: 11.69, preferCSSPageSize: true });
      const pages = pagesOf(data);
      console.log(`        ${pages} pages`);
      assert.ok(pages > 100 && pages <= 500, `${pages} pages`);
      assert.strictEqual(await tab.evaluate(`document.getElementById('paper')`), null);
    });
  });
  await check('What is chosen is printed alone', async () => {
    await stage.show(chatPage(LONG), async (tab) => {
      await tab.evaluate(`window.printed = []; window.print = () => {
        dispatchEvent(new Event('beforeprint'));
        printed.push(document.querySelectorAll('#paper .entry').length, document.querySelector('#paper .entry').textContent);
        dispatchEvent(new Event('afterprint'));
      }`);
      await tab.clickOn('input[type=search]');
      await tab.type('needle');
      for (const choice of [1, 2, 3]) {
        await tab.clickOn('.buttons button:last-child');
        await tab.clickOn(`.choices button:nth-child(${choice})`);
      }
      assert.deepStrictEqual(await tab.evaluate('printed'), [
        6000, '12:00 Ann Message 0', 2880, '23:45 Me Message 49', 6, '07:00 Ann Message 500 with a needle']);
    }, FORGETFUL);
  });
}

async function checkPaperHead(stage) {
  const printed = (tab) => tab.evaluate(`(dispatchEvent(new Event('beforeprint')), document.getElementById('paper').textContent)`);
  await check('Paper has the person, the warning, and what has no form of a row', async () => {
    const page = pageOf('Sms.html', { title: TITLE, person: PERSON }, ['stray text</div>\n', ...[
      at('2016-05-01 10:00:00', 'a'), at('2016-05-02 10:00:00', 'b')].map(messageRow)]);
    await stage.show(page, async (tab) => {
      const text = await printed(tab);
      for (const part of [TITLE, WHO, 'imitates others', 'stray text', 'Ann a', 'Ann b']) assert.ok(text.includes(part), `${part} isn't on paper`);
    });
  });
  await check('The month to print is the one on the screen, in both orders', async () => {
    await stage.show(chatPage(LONG), async (tab) => {
      const offered = async () => {
        await tab.clickOn('.buttons button:last-child');
        const text = await tab.evaluate(`document.querySelector('.choices button:nth-child(2)').textContent`);
        await tab.press('Escape', 'Escape', 27);
        return text;
      };
      assert.strictEqual(await offered(), 'May 2016 (49 messages)');
      await tab.clickOn('.order');
      assert.strictEqual(await offered(), 'February 2016 (95 messages)');
      await tab.clickOn('.buttons button');
      await tab.clickOn('.months li:nth-child(2) button');
      assert.strictEqual(await offered(), 'April 2016 (2880 messages)');
    }, FORGETFUL);
  });
}

async function checkChats(stage) {
  for (const part of [checkMessages, checkForm, checkLinks, checkSearch, checkMarkedAttachments, checkPlaces, checkNames, checkDoubt, checkPaper, checkPaperHead]) await part(stage);
}

module.exports = { checkChats };
