// The page of one conversion.
"use strict";
(() => {
    const { data, make, number, counted, name } = Page;
    const report = data.report;

    function duration(seconds) {
        return seconds < 10 ? number(seconds, 2) + "\u00a0s" : number(seconds, 1) + "\u00a0s";
    }

    function summary() {
        const distance = report.surface_distance_mm;
        const tiles = [{ value: number(report.created_morphs.length), label: report.created_morphs.length === 1 ? "morph made" : "morphs made" }];
        if (distance)
            tiles.push({ value: number(distance.mean, 3), unit: "mm", label: "mean distance to the source" },
                { value: number(distance.p95, 3), unit: "mm", label: "95 % are no farther" },
                { value: number(distance.max, 2), unit: "mm", label: "largest distance" });
        else
            tiles.push({
                value: number(Math.max(0, ...report.created_morphs.map((morph) => morph.largest_displacement_mm)), 1),
                unit: "mm", label: "largest displacement"
            });
        tiles.push({ value: number(report.warnings.length), label: report.warnings.length === 1 ? "warning" : "warnings", isBad: report.warnings.length > 0 },
            { value: duration(report.seconds.total), label: "time" });
        Page.section("summary", "Summary", Page.tiles(tiles),
            distance && distance.parts.length > 0 ? make("p", { class: "note" }, "The distance counts in: ",
                distance.parts.map((part, i) => [i ? ", " : "", name(part)]), ".") : null,
            distance ? null : make("p", { class: "note" }, "The distance to the source is measured only where the morphs "
                + "make the whole figure: with the job full, or with head and body."));
    }

    function pictures() {
        if (!data.pictures)
            return;
        const captions = { front: "front", "three-quarter": "three-quarter", side: "side", back: "back", face: "face" };
        const rows = data.pictures.map((row) => make("div", { class: "together" }, make("h3", {}, row.title), make("div", { class: "pictures" },
            row.images.map(({ view, image }) => make("figure", {},
                make("img", { src: image, alt: `${row.alt}, ${captions[view]}`, width: data.pictureWidth, height: data.pictureHeight }),
                make("figcaption", {}, captions[view]))))));
        Page.section("pictures", "Pictures", rows, Page.legend(data.scale),
            data.picturesNote ? make("p", { class: "note" }, data.picturesNote) : null);
    }

    function distances() {
        if (!data.histogram)
            return;
        const distance = report.surface_distance_mm;
        Page.section("distances", "Distances", Page.histogram(data.histogram, [
            { value: distance.mean, label: "mean" }, { value: distance.p95, label: "95 %" }]),
        make("p", { class: "note" }, data.histogram.text));
    }

    function turn() {
        if (data.figure)
            Page.section("turn", "The figure", Page.viewer(data.figure), data.figureNote ? make("p", { class: "note" }, data.figureNote) : null);
    }

    function morphs() {
        const columns = [
            { key: "name", title: "Name" }, { key: "label", title: "Label" }, { key: "kind", title: "Kind" },
            { key: "path", title: "Group" },
            { key: "vertices_moved", title: "Vertices", kind: "number", hint: "Vertices of the base mesh that it moves" },
            { key: "largest_displacement_mm", title: "Largest, mm", kind: "number", decimals: 2, hint: "Largest displacement" }];
        if (report.created_morphs.some((morph) => morph.detail_vertices_moved))
            columns.push({ key: "detail_vertices_moved", title: "Detail", kind: "number", hint: "Vertices of the subdivided meshes that it moves" });
        if (report.created_morphs.some((morph) => morph.joints_moved !== undefined))
            columns.push({ key: "joints_moved", title: "Joints", kind: "number" });
        if (report.created_morphs.some((morph) => morph.file))
            columns.push({ key: "file", title: "File", kind: "code" });
        const missing = report.missing_morphs.length === 0 ? null : [
            make("h3", { class: "apart" }, "Missing"),
            make("p", { class: "note" }, "Morphs that the source wears and that were lost on the way."),
            Page.table([{ key: "name", title: "Name" }, { key: "value", title: "Value", kind: "number", decimals: 3 }], report.missing_morphs,
                { id: "missing", label: "Missing morphs" })];
        Page.section("morphs", "Morphs", Page.table(columns, report.created_morphs, { id: "made", label: "Morphs made" }), missing);
    }

    function warnings() {
        Page.section("warnings", "Warnings", report.warnings.length > 0 ? Page.list(report.warnings) : make("p", {}, "None."));
    }

    function figure(label, described, file) {
        return [label, [name(described.label), make("br"), `${described.kind}, ${counted(described.vertices, "vertex", "vertices")}`,
            make("br"), name(file)]];
    }

    function dialsOf(title, id, dials) {
        const limited = dials.some((dial) => dial.clamped) ? [{ key: "asked", title: "Asked for", kind: "number", decimals: 3 }] : [];
        return [make("h3", { class: "apart" }, title), dials.length === 0 ? make("p", {}, "All at their defaults.")
            : Page.table([{ key: "name", title: "Name" }, { key: "label", title: "Label" },
                { key: "value", title: "Value", kind: "number", decimals: 3 }, ...limited],
            dials.map((dial) => ({ ...dial, asked: dial.clamped ? dial.wanted : undefined })), { id, label: title })];
    }

    function dials() {
        const held = [...report.dials.source, ...report.dials.target].filter((dial) => dial.clamped).length;
        Page.section("dials", "Dials", make("p", { class: "note" }, "Dials that were not at their defaults, and those that were asked for.",
            held > 0 ? ` The limits of ${counted(held, "dial", "dials")} hold less than was asked for.` : ""),
        dialsOf("Source", "sourcedials", report.dials.source), dialsOf("Target, besides the new morphs", "targetdials", report.dials.target));
    }

    function settings() {
        Page.section("settings", "Settings", Page.command(data.command), Page.facts([
            figure("Source", report.figures.source, data.sourceFile),
            figure("Target", report.figures.target, data.targetFile),
            ["Jobs", report.jobs.join(", ")],
            ["Resolution", report.subd_level ? `subdivided, level ${report.subd_level}` : "base"],
            ["Clone shape", name(report.clone_shape)],
            ["Bases", data.bases.length > 0 ? data.bases.map((base, i) => [i ? ", " : "", name(base)]) : "none"],
            ["Morphs that the source wears", number(report.active_morphs)],
            ["Other files written", report.files.length > 0 ? Page.list(report.files) : "none"],
            ["Peak memory", number(report.peak_memory_mib) + "\u00a0MiB"],
            ["Version", data.version], ["Date", data.date]]));
    }

    function times() {
        const total = report.seconds.total;
        Page.section("times", "Times", Page.table([
            { key: "step", title: "Step" }, { key: "seconds", title: "Seconds", kind: "number", decimals: 3 },
            { key: "share", title: "Share, %", kind: "number", decimals: 1 }],
        report.seconds.steps.map((step) => ({ ...step, share: total > 0 ? 100 * step.seconds / total : 0 })), { id: "steps", label: "Times" }));
    }

    Page.header(data.title, [name(report.figures.source.label), " \u2192 ", name(report.figures.target.label), `, ${data.date}`]);
    summary();
    pictures();
    turn();
    distances();
    morphs();
    dials();
    warnings();
    times();
    settings();
    Page.footer();
})();
