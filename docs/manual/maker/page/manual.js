// Finds words in the manual: each section that has all of them is listed, and they are marked in the text.
"use strict";

const search = document.getElementById("search");
const results = document.getElementById("results");
const contents = document.getElementById("contents");

// A section is a heading with what follows up to the next one.
const sections = [];
for (const chapter of document.querySelectorAll("main section")) {
    for (const element of chapter.children) {
        if (/^H[1-3]$/.test(element.tagName)) {
            sections.push({ name: element.querySelector("a").id, heading: element.textContent, elements: [element] });
        } else {
            sections[sections.length - 1].elements.push(element);
        }
    }
}
for (const section of sections) {
    section.text = section.elements.map((element) => element.textContent).join(" ").replace(/\s+/g, " ");
    section.folded = section.text.toLowerCase();
}

function unmark() {
    for (const mark of document.querySelectorAll("main mark")) {
        const parent = mark.parentNode;
        mark.replaceWith(mark.textContent);
        parent.normalize();
    }
}

function mark(element, words) {
    const texts = [];
    const walker = document.createTreeWalker(element, NodeFilter.SHOW_TEXT);
    while (walker.nextNode()) {
        texts.push(walker.currentNode);
    }
    for (const text of texts) {
        let rest = text;
        for (;;) {
            const folded = rest.data.toLowerCase();
            const places = words.map((word) => [folded.indexOf(word), word.length]).filter((place) => place[0] >= 0);
            if (places.length === 0) {
                break;
            }
            const [at, length] = places.sort((a, b) => a[0] - b[0] || b[1] - a[1])[0];
            const found = rest.splitText(at);
            rest = found.splitText(length);
            const around = document.createElement("mark");
            found.replaceWith(around);
            around.append(found);
        }
    }
}

function line(section, words) {
    const link = document.createElement("a");
    link.href = "#" + section.name;
    const heading = document.createElement("b");
    heading.textContent = section.heading;
    const at = Math.max(0, section.folded.indexOf(words[0]) - 40);
    const excerpt = (at > 0 ? "… " : "") + section.text.slice(at, at + 120) + " …";
    link.append(heading, excerpt);
    return link;
}

function show() {
    const words = search.value.toLowerCase().split(/\s+/).filter((word) => word.length > 1);
    unmark();
    results.hidden = words.length === 0;
    contents.hidden = words.length > 0;
    if (words.length === 0) {
        return;
    }
    const found = sections.filter((section) => words.every((word) => section.folded.includes(word)));
    // Those with the words in their headings first.
    const inHeading = (section) => words.every((word) => section.heading.toLowerCase().includes(word));
    found.sort((a, b) => inHeading(b) - inHeading(a));
    results.replaceChildren(...found.map((section) => line(section, words)));
    if (found.length === 0) {
        results.textContent = "Nothing in the manual has all of these words.";
    }
    for (const section of found) {
        section.elements.forEach((element) => mark(element, words));
    }
}

search.addEventListener("input", show);
search.addEventListener("keydown", (event) => {
    if (event.key === "Escape") {
        search.value = "";
        show();
    } else if (event.key === "Enter" && results.querySelector("a")) {
        results.querySelector("a").click();
    }
});
