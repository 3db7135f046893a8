import js from "@eslint/js";
import tseslint from "typescript-eslint";

export default tseslint.config(
    { ignores: ["node_modules/"] },
    js.configs.recommended,
    {
        files: ["**/*.ts"],
        extends: [...tseslint.configs.strictTypeChecked, ...tseslint.configs.stylisticTypeChecked],
        languageOptions: { parserOptions: { projectService: true } },
        rules: {
            // A function fits a screen, as in the rest of the project.
            "max-lines-per-function": ["error", { max: 46 }],
            // Numbers are written into texts everywhere.
            "@typescript-eslint/restrict-template-expressions": ["error", { allowNumber: true }],
            // Text reaches the page by textContent alone.
            "no-restricted-properties": [
                "error",
                { property: "innerHTML" },
                { property: "outerHTML" },
                { property: "insertAdjacentHTML" },
                { object: "document", property: "write" },
            ],
        },
    },
    {
        files: ["tests/**/*.ts", "benchmarks/**/*.ts"],
        rules: {
            // A group of tests is one function of the runner; what `test` returns, the runner awaits.
            "max-lines-per-function": "off",
            "@typescript-eslint/no-floating-promises": "off",
        },
    },
    {
        files: ["**/*.mjs"],
        languageOptions: { globals: { process: "readonly", console: "readonly", URL: "readonly" } },
    },
);
