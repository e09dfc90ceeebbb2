// Serves on a free port of the loopback interface, from the directory in which the package is installed:
//   node start-aimock.js <directory with node_modules>
const path = require('path');
const { createRequire } = require('module');

const installed = createRequire(path.join(process.argv[2], 'package.json'));
const { LLMock } = installed('@copilotkit/aimock');

const mock = new LLMock({ port: 0, host: '127.0.0.1', chunkSize: 7 });
mock.onMessage('teh cat', { content: 'the cat, Gr\u00fc\u00dfe, \u732b \u{1F600}', systemFingerprint: 'f' });
mock.start().then(() => console.log(`listening on ${mock.url}`));
