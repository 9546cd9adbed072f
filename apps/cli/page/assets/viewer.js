// A figure to turn, with sliders for its morphs.
"use strict";
(() => {
    const make = Page.make;
    const keyStep = Math.PI / 18;

    function bytes(text) {
        const raw = atob(text);
        const made = new Uint8Array(raw.length);
        for (let i = 0; i < raw.length; ++i)
            made[i] = raw.charCodeAt(i);
        return made.buffer;
    }

    // The file has the lower byte first, as every machine has that draws this.
    const indices = (text, isWide) => isWide ? new Uint32Array(bytes(text)) : new Uint16Array(bytes(text));

    function unpackPositions(packed) {
        const raw = new Uint16Array(bytes(packed.positions));
        const positions = new Float32Array(raw.length);
        for (let i = 0; i < raw.length; ++i)
            positions[i] = packed.low[i % 3] + packed.size[i % 3] * raw[i] / 65535;
        return positions;
    }

    // Four corners a face, of which the last two are one in a triangle.
    function triangles(packed) {
        const faces = indices(packed.faces, packed.isWide);
        const corners = [];
        for (let f = 0; f < faces.length; f += 4) {
            corners.push(faces[f], faces[f + 1], faces[f + 2]);
            if (faces[f + 3] !== faces[f + 2])
                corners.push(faces[f], faces[f + 2], faces[f + 3]);
        }
        return packed.isWide ? new Uint32Array(corners) : new Uint16Array(corners);
    }

    function unpackMorph(packed, isWide) {
        const raw = new Int16Array(bytes(packed.deltas));
        const deltas = new Float32Array(raw.length);
        for (let i = 0; i < raw.length; ++i)
            deltas[i] = raw[i] * packed.scale;
        return { vertices: packed.vertices === null ? null : indices(packed.vertices, isWide), deltas };
    }

    function geometryOf(packed) {
        const geometry = new THREE.BufferGeometry();
        geometry.setAttribute("position", new THREE.BufferAttribute(unpackPositions(packed), 3));
        geometry.setIndex(new THREE.BufferAttribute(triangles(packed), 1));
        geometry.computeVertexNormals();
        return geometry;
    }

    function parseColor(hex) {
        return [1, 3, 5].map((at) => parseInt(hex.slice(at, at + 2), 16) / 255);
    }

    class Figure {
        constructor(packed) {
            this.packed = packed;
            this.geometry = geometryOf(packed);
            this.neutral = this.geometry.attributes.position.array.slice();
            this.colors = new Float32Array(this.neutral.length);
            this.geometry.setAttribute("color", new THREE.BufferAttribute(this.colors, 3));
            this.morphs = new Map(); // unpacked when first asked for
            this.table = Page.data.colors.map(parseColor);
            this.distances = packed.distances ? new Uint8Array(bytes(packed.distances.values)) : null;
        }

        morph(index) {
            if (!this.morphs.has(index))
                this.morphs.set(index, unpackMorph(this.packed.morphs[index], this.packed.isWide));
            return this.morphs.get(index);
        }

        shape(values) {
            const positions = this.geometry.attributes.position.array;
            positions.set(this.neutral);
            values.forEach((value, index) => {
                if (value === 0)
                    return;
                const { vertices, deltas } = this.morph(index);
                const count = deltas.length / 3;
                for (let i = 0; i < count; ++i) {
                    const at = 3 * (vertices ? vertices[i] : i);
                    for (let k = 0; k < 3; ++k)
                        positions[at + k] += value * deltas[3 * i + k];
                }
            });
            this.geometry.attributes.position.needsUpdate = true;
            this.geometry.computeVertexNormals();
        }

        paint(vertex, color) {
            this.colors.set(color, 3 * vertex);
        }

        paintDistances() {
            const over = parseColor(this.packed.distances.scale.overColor), none = [0.72, 0.72, 0.72];
            this.distances.forEach((value, vertex) => this.paint(vertex,
                value === 255 ? over : value === 254 ? none : this.table[Math.round(value / 253 * (this.table.length - 1))]));
            this.geometry.attributes.color.needsUpdate = true;
        }

        paintDisplacements(scale) {
            const over = parseColor(scale.overColor), positions = this.geometry.attributes.position.array;
            for (let at = 0; at < positions.length; at += 3) {
                const mm = 10 * Math.hypot(positions[at] - this.neutral[at], positions[at + 1] - this.neutral[at + 1],
                    positions[at + 2] - this.neutral[at + 2]);
                // What the numbers of the page leave off in rounding does not lie beyond the scale.
                this.paint(at / 3, mm > scale.top * 1.0005 ? over
                    : this.table[Math.min(this.table.length - 1, Math.round(mm / scale.top * (this.table.length - 1)))]);
            }
            this.geometry.attributes.color.needsUpdate = true;
        }
    }

    class Stage {
        constructor(holder, figure) {
            this.holder = holder;
            this.renderer = new THREE.WebGLRenderer({ antialias: true, preserveDrawingBuffer: true });
            this.renderer.setPixelRatio(Math.min(2, window.devicePixelRatio || 1));
            this.canvas = this.renderer.domElement;
            this.canvas.tabIndex = 0;
            this.canvas.setAttribute("role", "img");
            holder.append(this.canvas);
            this.scene = new THREE.Scene();
            this.camera = new THREE.PerspectiveCamera(22, 1, 1, 5000);
            this.scene.add(this.camera);
            this.ambient = new THREE.AmbientLight(0xffffff, 0.45);
            this.lamp = new THREE.DirectionalLight(0xffffff, 0.55);
            this.lamp.position.set(-0.5, 0.6, 1);
            this.camera.add(this.lamp);
            this.scene.add(this.ambient);
            this.addFigures(figure);
            this.controls = new THREE.OrbitControls(this.camera, this.canvas);
            this.controls.enableKeys = false;
            this.controls.addEventListener("change", () => this.request());
            this.isPending = false;
            this.listen();
        }

        addFigures(figure) {
            this.plain = new THREE.MeshPhongMaterial({ color: 0xd9b8a4, specular: 0x1a1a1a, shininess: 18, side: THREE.DoubleSide });
            this.painted = new THREE.MeshLambertMaterial({ vertexColors: THREE.VertexColors, side: THREE.DoubleSide });
            this.mesh = new THREE.Mesh(figure.geometry, this.plain);
            this.neutral = figure.neutral;
            this.scene.add(this.mesh);
            this.source = null;
            if (!figure.packed.source)
                return;
            this.solid = new THREE.MeshPhongMaterial({ color: 0xb4bfd2, specular: 0x1a1a1a, shininess: 18, side: THREE.DoubleSide });
            this.ghost = new THREE.MeshPhongMaterial({
                // In front of all, since the two surfaces would break through each other everywhere.
                color: 0x3f74d6, transparent: true, opacity: 0.4, depthTest: false, depthWrite: false
            });
            this.source = new THREE.Mesh(geometryOf(figure.packed.source), this.solid);
            this.source.visible = false;
            this.scene.add(this.source);
        }

        listen() {
            this.canvas.addEventListener("keydown", (event) => this.onKey(event));
            // The page scrolls over the figure until it has been clicked.
            this.holder.addEventListener("wheel", (event) => {
                if (document.activeElement !== this.canvas)
                    event.stopPropagation();
            }, true);
            if (window.ResizeObserver)
                new ResizeObserver(() => this.fit()).observe(this.holder);
            else
                window.addEventListener("resize", () => this.fit());
            Page.onTheme(() => this.request());
            if (window.matchMedia)
                window.matchMedia("(prefers-color-scheme: dark)").addListener(() => this.request());
        }

        onKey(event) {
            const turns = { ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, -1], ArrowDown: [0, 1] };
            const zooms = { "+": 1 / 1.15, "=": 1 / 1.15, "-": 1.15, "_": 1.15 };
            if (event.ctrlKey || event.metaKey || event.altKey)
                return;
            if (turns[event.key])
                this.turn(keyStep * turns[event.key][0], keyStep * turns[event.key][1]);
            else if (zooms[event.key])
                this.move(new THREE.Vector3().subVectors(this.camera.position, this.controls.target)
                    .multiplyScalar(zooms[event.key]));
            else if (event.key === "r" || event.key === "R")
                this.look(this.view);
            else
                return;
            event.preventDefault();
        }

        turn(aside, down) {
            const offset = new THREE.Vector3().subVectors(this.camera.position, this.controls.target);
            const at = new THREE.Spherical().setFromVector3(offset);
            at.theta += aside;
            at.phi = Math.min(Math.PI - 0.01, Math.max(0.01, at.phi + down));
            this.move(offset.setFromSpherical(at));
        }

        move(offset) {
            this.camera.position.copy(this.controls.target).add(offset);
            this.controls.update();
            this.request();
        }

        // What is seen: the figures that are shown, or the head of the first.
        boxOf(view) {
            const box = new THREE.Box3().setFromBufferAttribute(this.mesh.geometry.attributes.position);
            // Vertices that a morph throws to the next town are not followed there.
            const neutral = new THREE.Box3().setFromArray(this.neutral), size = neutral.getSize(new THREE.Vector3());
            box.intersect(neutral.expandByVector(size.multiplyScalar(3)));
            if (view === "face") {
                const floor = box.max.y - 0.145 * (box.max.y - box.min.y), head = new THREE.Box3();
                const positions = this.mesh.geometry.attributes.position.array;
                for (let at = 0; at < positions.length; at += 3)
                    if (positions[at + 1] >= floor)
                        head.expandByPoint(new THREE.Vector3(positions[at], positions[at + 1], positions[at + 2]));
                return head;
            }
            if (this.source && this.source.visible) {
                const other = new THREE.Box3().setFromBufferAttribute(this.source.geometry.attributes.position);
                box.union(other.translate(this.source.position));
            }
            return box;
        }

        look(view) {
            this.view = view;
            const turns = { front: 0, "three-quarter": 35, side: 90, back: 180, face: 0 };
            const turn = turns[view] * Math.PI / 180;
            const box = this.boxOf(view), size = box.getSize(new THREE.Vector3());
            const wide = Math.abs(size.x * Math.cos(turn)) + Math.abs(size.z * Math.sin(turn));
            const deep = Math.abs(size.x * Math.sin(turn)) + Math.abs(size.z * Math.cos(turn));
            const slope = Math.tan(this.camera.fov * Math.PI / 360);
            const away = 1.06 * Math.max(size.y / 2, wide / 2 / this.camera.aspect) / slope + deep / 2;
            box.getCenter(this.controls.target);
            this.camera.near = away / 100;
            this.camera.far = away * 20;
            this.camera.updateProjectionMatrix();
            this.move(new THREE.Vector3(Math.sin(turn) * away, 0, Math.cos(turn) * away));
        }

        showSource(how) {
            if (!this.source)
                return;
            this.source.visible = how !== "none";
            this.source.material = how === "over" ? this.ghost : this.solid;
            const own = new THREE.Box3().setFromBufferAttribute(this.mesh.geometry.attributes.position);
            const other = new THREE.Box3().setFromBufferAttribute(this.source.geometry.attributes.position);
            const gap = 0.08 * (own.max.x - own.min.x);
            this.source.position.x = how === "beside" ? own.min.x - other.max.x - gap : 0;
            this.look(this.view);
        }

        showPainted(isPainted) {
            this.mesh.material = isPainted ? this.painted : this.plain;
            // Colours mean something: shadows are to change them little.
            this.ambient.intensity = isPainted ? 0.72 : 0.45;
            this.lamp.intensity = isPainted ? 0.34 : 0.55;
            this.request();
        }

        fit() {
            const width = this.holder.clientWidth, height = this.holder.clientHeight;
            if (width === 0 || height === 0)
                return;
            this.renderer.setSize(width, height);
            this.camera.aspect = width / height;
            this.camera.updateProjectionMatrix();
            if (this.isDrawn)
                this.request();
            else
                this.look(this.view);
            this.isDrawn = true;
        }

        request() {
            if (this.isPending)
                return;
            this.isPending = true;
            window.requestAnimationFrame(() => {
                this.isPending = false;
                const ground = window.getComputedStyle(this.holder).backgroundColor;
                this.renderer.setClearColor(new THREE.Color(ground), 1);
                this.renderer.render(this.scene, this.camera);
            });
        }
    }

    function isWebGlThere() {
        try {
            return Boolean(document.createElement("canvas").getContext("webgl"));
        } catch (error) {
            return false;
        }
    }

    function slider(label, value, onInput) {
        const shown = make("output", {});
        const input = make("input", {
            type: "range", min: 0, max: 100, step: 1, value: Math.round(100 * value), oninput: () => tell(true)
        });
        const text = make("span", { class: "dial" }, Page.name(label), shown);
        const tell = (isNew) => {
            shown.textContent = Page.number(Number(input.value)) + "\u202f%";
            if (isNew)
                onInput(Number(input.value) / 100);
        };
        tell(false);
        return {
            element: make("label", {}, text, input),
            set(newLabel, newValue) {
                text.firstChild.textContent = newLabel;
                input.value = Math.round(100 * newValue);
                tell(false);
            }
        };
    }

    function chooser(label, choices, onChange) {
        const select = make("select", { onchange: () => onChange(select.value) },
            choices.map(([value, text]) => make("option", { value }, text)));
        return { element: make("label", { class: "control" }, label, select), select };
    }

    // packed: {low, size, positions, faces, isWide, morphs: [{label, vertices, deltas, scale, value, displacements}],
    // distances: {values, scale}, source, hasPicker}; displacements: the colour scale of a morph or of all.
    Page.viewer = (packed) => {
        if (!isWebGlThere())
            return make("p", { class: "notice" },
                "This browser shows no WebGL here, so the figure cannot be turned; the pictures show it as well.");
        const holder = make("div", { class: "stage" });
        const figure = new Figure(packed);
        const stage = new Stage(holder, figure);
        stage.view = "front";
        const values = packed.morphs.map((morph) => morph.value);
        let mode = "plain", picked = 0;
        const legend = make("div", {});

        function paint() {
            if (mode === "distance")
                figure.paintDistances();
            else if (mode === "displacement")
                figure.paintDisplacements(packed.hasPicker ? packed.morphs[picked].displacements : packed.displacements);
            stage.showPainted(mode !== "plain");
        }
        function shape() {
            figure.shape(values);
            paint();
        }
        function tellScale() {
            const scale = mode === "distance" ? packed.distances.scale : mode === "plain" ? null
                : packed.hasPicker ? packed.morphs[picked].displacements : packed.displacements;
            legend.replaceChildren(...(scale ? [Page.legend(scale)] : []));
        }

        const side = make("div", { class: "side" });
        if (packed.hasPicker) {
            const dial = slider(packed.morphs[0].label, values[0], (value) => { values[picked] = value; shape(); });
            const picker = chooser("Morph", packed.morphs.map((morph, i) => [i, morph.label]), (chosen) => {
                values[picked] = 0;
                picked = Number(chosen);
                values[picked] = 1;
                dial.set(packed.morphs[picked].label, 1);
                tellScale();
                shape();
            });
            side.append(picker.element, dial.element);
        } else {
            packed.morphs.forEach((morph, i) => side.append(
                slider(morph.label, values[i], (value) => { values[i] = value; shape(); }).element));
        }
        const modes = [["plain", "Plain"]];
        if (packed.distances)
            modes.push(["distance", "Distance to the source"]);
        modes.push(["displacement", packed.hasPicker ? "Displacement" : "Displacement by the morphs"]);
        function color(chosen) {
            mode = chosen;
            tellScale();
            paint();
        }
        // Seen through the source, colours would not be those of the legend.
        const colors = chooser("Colours", modes, (chosen) => {
            if (chosen !== "plain" && sources && sources.select.value === "over") {
                sources.select.value = "none";
                stage.showSource("none");
            }
            color(chosen);
        });
        const sources = packed.source ? chooser("Source",
            [["none", "Hidden"], ["beside", "Beside the figure"], ["over", "Over it, see-through"]], (chosen) => {
                if (chosen === "over" && mode !== "plain") {
                    colors.select.value = "plain";
                    color("plain");
                }
                stage.showSource(chosen);
            }) : null;
        side.append(colors.element, legend, sources ? sources.element : "");
        side.append(make("div", { class: "views control", role: "group", "aria-label": "Views" },
            [["front", "Front"], ["three-quarter", "Three-quarter"], ["side", "Side"], ["back", "Back"], ["face", "Face"]].map(
                ([view, text]) => make("button", { type: "button", "data-view": view, onclick: () => stage.look(view) }, text))),
        make("p", { class: "note" }, "Drag to turn, with the right button or two fingers to shift. Once clicked: the wheel, "
            + "+ and \u2212 zoom, arrow keys turn, R resets."));
        stage.canvas.setAttribute("aria-label", packed.what || "The converted figure, to be turned");
        shape();
        window.requestAnimationFrame(() => stage.fit());
        return make("div", { class: "viewer" }, holder, side);
    };
})();
