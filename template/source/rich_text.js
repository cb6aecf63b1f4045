
// Controls of the direction of text are no part of an address: they could make it look like another.
const LINK = /https?:\/\/[^\s<>"\u200e\u200f\u202a-\u202e\u2066-\u2069\ufffc]+/gi;
const LINK_END = '.,:;!?\'’”»)]}…';
const ATTACHMENT = '\ufffc';  // the object character, which stands for an attachment in a text
const EMOJI = new RegExp(
  '^\\s*(?:(?:\\p{Regional_Indicator}{2}|[0-9#*]\\ufe0f?\\u20e3|' +
  '(?:\\p{Emoji_Modifier_Base}\\p{Emoji_Modifier}|\\p{Emoji_Presentation}|\\p{Extended_Pictographic}\\ufe0f)[\\u{e0020}-\\u{e007f}]*' +
  '(?:\\u200d\\p{Extended_Pictographic}\\ufe0f?\\p{Emoji_Modifier}?)*)\\s*){1,3}$', 'u');

/// The true target of a text that looks like an address of the web; null when it isn't one.
function linkTarget(text) {
  try {
    const { href, protocol } = new URL(text);
    return protocol === 'http:' || protocol === 'https:' ? href : null;
  } catch {
    return null;
  }
}

/// Without the punctuation behind an address, but with brackets that are opened within.
function trimmedLink(text) {
  let open = 0;
  for (const character of text) open += (character === '(') - (character === ')');
  let end = text.length;
  while (end > 0 && LINK_END.includes(text[end - 1])) {
    if (text[end - 1] === ')' && open++ >= 0) break;
    --end;
  }
  return text.slice(0, end);
}

/// The parts of a text: [{ start, end, target }]. A part with a target is a link, a part of one object character an
/// attachment.
function partsOf(text) {
  const special = [];
  for (const { 0: match, index } of text.matchAll(LINK)) {
    const link = trimmedLink(match);
    const target = linkTarget(link);
    if (target) special.push({ start: index, end: index + link.length, target });
  }
  for (let at = text.indexOf(ATTACHMENT); at >= 0; at = text.indexOf(ATTACHMENT, at + 1)) special.push({ start: at, end: at + 1 });
  special.sort((one, other) => one.start - other.start);

  const parts = [];
  let at = 0;
  for (const part of special) {
    if (part.start > at) parts.push({ start: at, end: part.start });
    parts.push(part);
    at = part.end;
  }
  if (at < text.length || !text) parts.push({ start: at, end: text.length });
  return parts;
}

/// Where a query occurs in a text: [[start, end]].
function hitsIn(text, query) {
  const wanted = folded(query);
  const hits = [];
  if (!wanted) return hits;
  const searched = folded(text);
  for (let at = searched.indexOf(wanted); at >= 0; at = searched.indexOf(wanted, at + wanted.length))
    hits.push([at, at + wanted.length]);
  return hits;
}

/// Appends parts of a text one after the other, with the hits of a query marked.
class Marker {
  constructor(text, query) {
    this.text = text;
    this.hits = hitsIn(text, query);
    this.next = 0;  // the first hit that may reach into what comes
  }

  append(parent, start, end) {
    const { text, hits } = this;
    let at = start;
    for (; this.next < hits.length && hits[this.next][0] < end; ++this.next) {
      const from = Math.max(hits[this.next][0], at);
      const to = Math.min(hits[this.next][1], end);
      if (from >= to) continue;  // in an attachment, which isn't marked
      parent.append(text.slice(at, from), make('mark', '', text.slice(from, to)));
      at = to;
      if (hits[this.next][1] > end) break;  // the rest of the hit is in the next part
    }
    parent.append(text.slice(at, end));
  }
}

/// Appends a stranger's text, with links and attachments. @param folder where the recovery puts attachments.
function appendRich(parent, text, query, folder) {
  const marker = new Marker(text, query);
  for (const { start, end, target } of partsOf(text)) {
    if (target) {
      const link = make('a', '');
      Object.assign(link, { href: target, title: target, target: '_blank', rel: 'noopener noreferrer', referrerPolicy: 'no-referrer' });
      marker.append(link, start, end);
      parent.append(link);
    } else if (text[start] === ATTACHMENT && end === start + 1) {
      const chip = make('span', 'attachment', 'Attachment', make('span', 'unseen', ` in the folder "${folder}"`));
      chip.title = `In the folder "${folder}" of the recovery`;
      parent.append(chip);
    } else {
      marker.append(parent, start, end);
    }
  }
}
