// What every page has in common: its data, its parts, and light or dark.
"use strict";
const Page = (() => {
    const data = JSON.parse(document.getElementById("page-data").textContent);
    const main = document.getElementById("page");
    let links = null;

    // An element. Names that begin with "on" are listeners; text is only ever text.
    function make(tag, attributes, ...children) {
        const element = tag === "svg" || (attributes && attributes.isSvg)
            ? document.createElementNS("http://www.w3.org/2000/svg", tag)
            : document.createElement(tag);
        for (const [name, value] of Object.entries(attributes || {})) {
            if (name === "isSvg" || value === undefined || value === null || value === false)
                continue;
            if (name.startsWith("on"))
                element.addEventListener(name.slice(2), value);
            else
                element.setAttribute(name, value === true ? "" : value);
        }
        element.append(...children.flat(Infinity).filter((child) => child !== null && child !== undefined));
        return element;
    }

    // With a thin space between thousands, and so many decimals.
    function number(value, decimals = 0) {
        if (typeof value !== "number" || !isFinite(value))
            return "\u2013";
        const [whole, part] = Math.abs(value).toFixed(decimals).split(".");
        const sign = value < 0 && Number(value.toFixed(decimals)) !== 0 ? "\u2212" : "";
        return sign + whole.replace(/\B(?=(\d{3})+$)/g, "\u202f") + (part ? "." + part : "");
    }

    // Parts of round numbers, without what binary fractions leave.
    function exact(value) {
        const decimals = (String(Number(value.toPrecision(5))).split(".")[1] || "").length;
        return number(value, decimals);
    }

    function counted(count, one, many) {
        return number(count) + "\u00a0" + (count === 1 ? one : many);
    }

    // Names and paths of others, in whichever direction their letters run.
    function name(text) {
        return make("bdi", {}, String(text));
    }

    // Browsers may refuse to remember anything for pages from disk.
    function remembered(key) {
        try {
            return window.localStorage.getItem(key);
        } catch (error) {
            return null;
        }
    }

    function remember(key, value) {
        try {
            window.localStorage.setItem(key, value);
        } catch (error) {
            // It holds for this page, then.
        }
    }

    const themeListeners = [];
    function setTheme(theme) {
        document.documentElement.dataset.theme = theme;
        for (const listener of themeListeners)
            listener();
    }

    function themeChoice() {
        const theme = document.documentElement.dataset.theme;
        const choice = make("select", {
            id: "theme",
            onchange: () => {
                setTheme(choice.value);
                remember("gantrel-theme", choice.value);
            }
        }, [["auto", "As the system"], ["light", "Light"], ["dark", "Dark"]].map(
            ([value, text]) => make("option", { value, selected: value === theme }, text)));
        return make("label", { class: "theme control" }, "Colours ", choice);
    }

    function header(title, subtitle) {
        links = make("nav", { "aria-label": "Sections", class: "control" });
        main.append(make("header", {},
            make("div", { class: "headline" }, make("h1", {}, name(title)), themeChoice()),
            subtitle ? make("p", { class: "subtitle" }, subtitle) : null, links));
    }

    function section(id, title, ...content) {
        const made = make("section", { id, "aria-labelledby": id + "-title" },
            make("h2", { id: id + "-title" }, title), ...content);
        main.append(made);
        links.append(make("a", { href: "#" + id }, title));
        return made;
    }

    // Pairs of a name and what it is: text, elements, or a list of these.
    function facts(pairs) {
        return make("dl", { class: "facts" }, pairs.filter(([, value]) => value !== null && value !== undefined)
            .map(([key, value]) => make("div", {}, make("dt", {}, key), make("dd", {}, value))));
    }

    // Figures that are to be seen first: a value, and what it is.
    function tiles(list) {
        return make("ul", { class: "tiles" }, list.map(({ value, unit, label, isBad }) =>
            make("li", { class: isBad ? "bad" : null },
                make("strong", {}, value, unit ? make("small", {}, "\u00a0" + unit) : null), make("span", {}, label))));
    }

    function command(text) {
        const shown = make("pre", { class: "command", tabindex: "0" }, make("code", {}, text));
        const button = make("button", {
            type: "button", class: "control", onclick: () => {
                const chosen = window.getSelection();
                chosen.selectAllChildren(shown);
                let isCopied = false;
                try {
                    isCopied = document.execCommand("copy");
                } catch (error) {
                    isCopied = false;
                }
                button.textContent = isCopied ? "Copied" : "Chosen: copy it";
            }
        }, "Copy");
        return make("div", { class: "copied" }, shown, button);
    }

    function list(lines) {
        return make("ul", { class: "lines" }, lines.map((line) => make("li", {}, name(line))));
    }

    function color(position) {
        const colors = data.colors;
        const at = Math.max(0, Math.min(colors.length - 1, Math.round(position * (colors.length - 1))));
        return colors[at];
    }

    // Of a colour scale: {top, over, overColor, text}; top in millimetres.
    function legend(scale) {
        const stops = Array.from({ length: 33 }, (unused, i) => i / 32);
        const bar = make("svg", { viewBox: "0 0 320 12", preserveAspectRatio: "none", class: "bar", "aria-hidden": "true" },
            stops.slice(0, -1).map((stop, i) => make("rect", {
                isSvg: true, x: i * 10, y: 0, width: 10, height: 12, fill: color(stop + 1 / 64), "shape-rendering": "crispEdges"
            })));
        return make("div", { class: "legend" },
            make("div", { class: "scale" }, bar,
                make("div", { class: "ticks" }, [0, 0.25, 0.5, 0.75, 1].map(
                    (part) => make("span", {}, exact(part * scale.top))))),
            make("span", { class: "unit" }, "mm"),
            scale.over > 0 ? make("span", { class: "over" },
                make("svg", { viewBox: "0 0 12 12", class: "swatch", "aria-hidden": "true" },
                    make("rect", { isSvg: true, width: 12, height: 12, fill: scale.overColor })),
                " beyond") : null,
            make("p", { class: "note" }, scale.text));
    }

    // Counts of values in equal steps from 0: {step, counts}; in millimetres.
    function histogram({ step, counts, what }, marks) {
        const width = 720, height = 180, left = 52, bottom = 34, top = 18;
        const most = Math.max(1, ...counts), range = step * counts.length;
        const x = (value) => left + (width - left - 8) * Math.min(1, value / range);
        const y = (count) => top + (height - top - bottom) * (1 - count / most);
        const digits = range >= 100 ? 0 : range >= 10 ? 1 : range >= 1 ? 2 : range >= 0.1 ? 3 : 4;
        const text = (attributes, content) => make("text", { isSvg: true, ...attributes }, content);
        const bars = counts.map((count, i) => make("rect", {
            isSvg: true, class: "count", x: x(i * step) + 0.5, y: y(count),
            width: Math.max(0.5, x((i + 1) * step) - x(i * step) - 1), height: y(0) - y(count)
        }, make("title", { isSvg: true },
            `${number(i * step, digits)} to ${number((i + 1) * step, digits)} mm: ${number(count)}`)));
        const ticks = [0, 0.25, 0.5, 0.75, 1].map((part) => text({
            x: x(part * range), y: height - 14, class: "tick", "text-anchor": part === 1 ? "end" : part ? "middle" : "start"
        }, exact(part * range)));
        const lines = (marks || []).filter(({ value }) => value <= range).map(({ value, label }) => [
            make("line", { isSvg: true, class: "mark", x1: x(value), x2: x(value), y1: top - 4, y2: y(0) }),
            text({
                x: x(value) + (value > 0.8 * range ? -4 : 4), y: top + 4, class: "tick",
                "text-anchor": value > 0.8 * range ? "end" : "start"
            }, label)]);
        return make("div", { class: "wide" }, make("svg", {
            viewBox: `0 0 ${width} ${height}`, class: "histogram", role: "img", "aria-label": what
        }, bars, make("line", { isSvg: true, class: "axis", x1: left, x2: width - 8, y1: y(0), y2: y(0) }),
        text({ x: left - 6, y: top + 4, class: "tick", "text-anchor": "end" }, number(most)),
        text({ x: left - 6, y: y(0), class: "tick", "text-anchor": "end" }, "0"), ticks,
        text({ x: width - 8, y: height - 1, class: "tick", "text-anchor": "end" }, "mm"), lines));
    }

    function footer() {
        const credit = window.THREE ? " Figures are turned with three.js; its licence, MIT, stands in this page\u2019s source." : "";
        main.append(make("footer", {}, `Made by Gantrel ${data.version}, ${data.date}.${credit}`));
    }

    setTheme(["light", "dark"].includes(remembered("gantrel-theme")) ? remembered("gantrel-theme") : "auto");

    return {
        data, make, number, exact, counted, name, header, section, facts, tiles, command, list, color, legend, histogram, footer,
        onTheme: (listener) => themeListeners.push(listener)
    };
})();
