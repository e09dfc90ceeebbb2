// Serves on a free port of the loopback interface, from the directory in which the package is installed:
//   node start-mock-llm.js <directory with node_modules> <rules.json>
const fs = require('fs');
const path = require('path');
const { createRequire } = require('module');

const [directory, rules] = process.argv.slice(2);
const installed = createRequire(path.join(directory, 'package.json'));
const { createServer } = installed('@dwmkerr/mock-llm/dist/server');
const { getDefaultConfig } = installed('@dwmkerr/mock-llm/dist/config');

const config = getDefaultConfig();
config.rules.push(...JSON.parse(fs.readFileSync(rules, 'utf8')));
config.streaming = { chunkSize: 7, chunkIntervalMs: 5 };
const server = createServer(config, '127.0.0.1', 0).listen(0, '127.0.0.1', () => {
  console.log(`listening on http://127.0.0.1:${server.address().port}`);
});
