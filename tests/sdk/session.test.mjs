// Whole sessions between the server and the official client library, with a broker of this file's own. What is said in them
// the transcripts have; here it is the library that has to understand it.
import assert from 'node:assert/strict';
import { createHash } from 'node:crypto';
import { once } from 'node:events';
import { mkdir, mkdtemp, rm, writeFile } from 'node:fs/promises';
import { createServer } from 'node:net';
import test from 'node:test';

const load = path =>
    import(`@modelcontextprotocol/sdk/${path}`).catch(cause => {
        throw new Error('No client library: run "npm ci --ignore-scripts" in tests/sdk first.', { cause });
    });
const { Client } = await load('client/index.js');
const { StdioClientTransport } = await load('client/stdio.js');
const { ToolListChangedNotificationSchema } = await load('types.js');
const { AjvJsonSchemaValidator } = await load('validation/ajv');

const server = process.env.QUORVANTIS_MCP;
assert.ok(server, 'QUORVANTIS_MCP must be the path of the server to test.');

const agent = 'cursor'; // which has all tools
const identity = { clientID: 'client "1"', credential: 'pass/phrase é\n' };
const text = 'https://example.org/?q="a\\b"\r\n\t\u0001\u007f\u2028é😀';
const hash = '0123456789abcdef'.repeat(4);

// By tool: the arguments of a call. In the last one the broker refuses.
const workspace = { workspace_root: '/home/ana/a project' };
const calls = {
    get_integration_status: {},
    search_clipboard_history: { query: ' é/"', limit: 100 },
    get_clipboard_item: { entry_id: 'E-1' },
    resolve_image_references: { references: [`quorvantis://image/${hash}`], ...workspace, turn_id: 't' },
    resolve_current_prompt_images: { attachments: [{ asset_id: hash }], ...workspace, session_id: 's' },
    materialize_asset: { asset_id: hash, ...workspace },
    get_asset_metadata: { asset_id: hash },
    get_current_prompt_assets: {},
};
const refused = { query: 'refuse me' };

const broker = createServer(socket => socket.setEncoding('utf8').once('data', line => {
    const { requestID, query, ...request } = JSON.parse(line), version = 1;
    const isKnown = request.agent === agent && Object.keys(identity).every(key => request[key] === identity[key]);
    socket.end(JSON.stringify(isKnown && query !== refused.query ? {
        version, requestID, ok: true, matched: true, entries: [{ createdAt: 777000000.25, text, preview: text }],
        images: [{ assetID: hash, byteCount: 5e9, width: 640, height: 480, workspacePath: '/w/1.png' }],
    } : { version, requestID, ok: false, error: text }) + '\n');
}));

async function install(folder) {
    const agents = `${folder}/Integrations/Agents`, credentialPath = `${folder}/credential`;
    for (const each of [agents, `${folder}/Runtime`]) await mkdir(each, { recursive: true });
    await writeFile(credentialPath, identity.credential);
    await writeFile(`${agents}/${agent}.json`, JSON.stringify({
        agent, installedAt: 0, clientID: identity.clientID, credentialPath,
        credentialHash: createHash('sha256').update(identity.credential).digest('hex'),
        mcpServerName: '', mcpExecutablePath: '', hookExecutablePath: '', managedEntries: [], backupPaths: [],
    }));
    const args = ['serve', '--agent', agent, '--client-id', identity.clientID, '--credential-file', credentialPath];
    return { command: server, args, env: { QUORVANTIS_TESTING: '1', QUORVANTIS_APP_SUPPORT: folder } };
}

// Asks for this protocol version, where the library asks for its newest, and keeps the one agreed on.
function transportFor(version, parameters) {
    const transport = new StdioClientTransport(parameters), send = transport.send.bind(transport);
    transport.send = message => {
        if (message.method === 'initialize') message.params.protocolVersion = version;
        return send(message);
    };
    transport.setProtocolVersion = negotiated => (transport.negotiated = negotiated);
    return transport;
}

for (const version of ['2024-11-05', '2025-03-26', '2025-06-18', '2025-11-25'])
    test(version, { timeout: 20_000 }, async t => {
        const folder = await mkdtemp('/tmp/qv-'); // not $TMPDIR: its path can be too long for a socket
        const client = new Client({ name: 'session test', version: '1' });
        t.after(async () => {
            await client.close();
            broker.close();
            await rm(folder, { recursive: true, force: true });
        });
        const transport = transportFor(version, await install(folder));
        await once(broker.listen(`${folder}/Runtime/quorvantis.sock`), 'listening');
        const errors = []; // such as lines that are no messages, and answers to no request
        client.onerror = error => errors.push(error);
        let listChanges = 0;
        client.setNotificationHandler(ToolListChangedNotificationSchema, () => ++listChanges);

        await client.connect(transport);
        const exit = once(transport._process, 'exit');
        assert.equal(transport.negotiated, version);
        assert.deepEqual(await client.ping(), {});
        assert.equal(listChanges, 1, 'list changes notified by the time of the answer to the ping');

        const { tools } = await client.listTools();
        assert.deepEqual(tools.map(tool => tool.name).sort(), Object.keys(calls).sort());
        await Promise.all(tools.map(async ({ name, inputSchema }) => {
            const { valid, errorMessage } = new AjvJsonSchemaValidator().getValidator(inputSchema)(calls[name]);
            assert.ok(valid, `${name}: ${errorMessage}`);
            const { content, structuredContent, isError } = await client.callTool({ name, arguments: calls[name] });
            assert.equal(isError, false, name);
            // The broker's numbers are written as JavaScript writes them, so that even the text must be the same.
            assert.deepEqual(content, [{ type: 'text', text: JSON.stringify(structuredContent) }]);
            if (name === 'get_clipboard_item') assert.equal(structuredContent.text, text);
        }));
        assert.deepEqual(await client.callTool({ name: 'search_clipboard_history', arguments: refused }),
                         { content: [{ type: 'text', text }], isError: true });
        await assert.rejects(client.listResources(), { code: -32601, message: /Method not found/ });

        await client.close();
        assert.deepEqual(await exit, [0, null], 'exit status and signal');
        assert.deepEqual(errors, []);
        assert.equal(listChanges, 1);
    });
