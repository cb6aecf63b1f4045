'use strict';
// Whatever comes after <plaintext> is text to the HTML parser, to the end of the file: the texts of strangers
// can't close it. The functions below read that text and build the page from it, with textContent alone.

document.documentElement.classList.add('scripted');  // hides the raw text

const END_OF_CONTENT = '<!--end-of-content-->';

/// The text between the first `from` and the first `to` behind it; empty when one of them is missing.
function between(text, from, to) {
  const start = text.indexOf(from);
  const end = start < 0 ? -1 : text.indexOf(to, start + from.length);
  return end < 0 ? '' : text.slice(start + from.length, end);
}

/// The rows: from behind `opening` to the last end mark, which no row can hold behind it. Throws when there
/// are none to find.
function rowsOf(text, opening) {
  const start = text.indexOf(opening);
  const end = text.lastIndexOf(END_OF_CONTENT);
  if (start < 0 || end < start + opening.length) throw new Error('the page is not whole');
  return text.slice(start + opening.length, end);
}

/// An element with a class (may be empty) and a text or children.
function make(name, className, ...content) {
  const element = document.createElement(name);
  if (className) element.className = className;
  element.append(...content);
  return element;
}

/// As make, for the text of someone else, which may run from right to left.
function makeText(name, className, text) {
  const element = make(name, className);
  element.textContent = text;
  element.dir = 'auto';
  return element;
}

/// A button with a text, and what it does.
function makeButton(className, text, act) {
  const button = make('button', className, text);
  button.type = 'button';
  button.addEventListener('click', act);
  return button;
}

/// Number and noun: "1 message", "2 messages".
function counted(number, noun) {
  return number + ' ' + noun + (number === 1 ? '' : 's');
}

/// For comparisons without regard to case. The result is as long as the text.
function folded(text) {
  return text.replaceAll('İ', 'i').toLowerCase().replaceAll('ς', 'σ');
}

/// Calls build with the raw text and its title. It returns { elements, title, shown }: those of the page, the title of the
/// tab and, if there is more to do once the elements are in the page, a function. When that fails, the raw text is shown:
/// nothing that was recovered may be missing.
function whenRead(build) {
  document.addEventListener('DOMContentLoaded', () => {
    const source = document.getElementById('source');
    let elements = [];
    try {
      const text = source.textContent;
      const page = build(text, between(text, '<h1>', '</h1>\n'));
      elements = page.elements;
      source.before(...elements);
      page.shown?.();
      source.remove();
      if (page.title) document.title = page.title;
    } catch (error) {
      for (const element of elements) element.remove();
      document.documentElement.classList.remove('scripted');
      throw error;
    }
  });
}
