// Writes a page of a made-up run: make_page BUNDLE FILE [COLUMNS ROWS METALS]
import { writeFileSync } from "node:fs";
import { makeRun, pageText } from "./support/page_file.ts";
import { facts, makeTransistors } from "./support/samples.ts";

const [bundle, file, ...numbers] = process.argv.slice(2);
const [columns = 180, rows = 121, metals = 2] = numbers.map(Number);
const { run, data } = makeRun(makeTransistors(columns, rows, metals), facts);
writeFileSync(file, pageText(run, data, bundle));
