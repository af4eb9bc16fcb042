import assert from "node:assert/strict";
import { test } from "node:test";
import { readAddress, writeAddress } from "../address.js";
import { termsOf } from "../selection/query.js";
import { harmless, oneLine } from "../views/dom.js";

test("words, phrases, patterns and values", () => {
    const said = termsOf('ring "led 3" /a b\\/c/ codec="G.711 A law" led=3 -reset -link=ip a.b');
    assert.deepEqual(said.map(({ not, pattern, name, words }) => [not, pattern ? pattern.source : null, name, words]), [
        [false, "ring", "", ""],
        [false, "led 3", "", ""],
        [false, "a b\\/c", "", ""],
        [false, null, "codec", "g.711 a law"],
        [false, null, "led", "3"],
        [true, "reset", "", ""],
        [true, null, "link", "ip"],
        [false, "a\\.b", "", ""],
    ]);
    assert.deepEqual(termsOf("  "), []);
    assert.throws(() => termsOf("/(/"), SyntaxError);
});

test("an address says what it was told", () => {
    const place = {
        file: 2, line: 120, message: 1, tab: "ladder", query: 'codec="G.711 A law"', all: true,
        chosen: { link: ["ip", "he"], direction: [], name: [], status: [], finding: ["missing bytes"] },
    };
    assert.deepEqual(readAddress(writeAddress(place)), place);
    assert.equal(readAddress("#line=120").line, 120);
    assert.equal(readAddress("#line=x&file=-1").line, 0);
    assert.equal(readAddress("#line=x&file=-1").file, 1);
});

test("nothing in a text acts on what stands around it", () => {
    assert.equal(harmless("a\u202eb\u0007\tc\n<b>\u200f\ufeff"), "a\\u202eb\\x07\tc\n<b>\\u200f\\ufeff");
    assert.equal(oneLine("a\r\n\tb\u2028c"), "a b\\u2028c");
});
