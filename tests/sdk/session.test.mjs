// Whole sessions between the server and the official client library, with a broker of this file's own.
import assert from 'node:assert/strict';
import { createHash } from 'node:crypto';
import { once } from 'node:events';
import { mkdir, mkdtemp, rm, writeFile } from 'node:fs/promises';
import { createServer } from 'node:net';
import { join } from 'node:path';
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

const identity = { clientID: 'client "1"', credential: 'pass/phrase é\n' };
const refusal = 'No access to the "whole" history – see Settings/Agents.';
const hash = '0123456789abcdef'.repeat(4);
const workspaceRoot = '/home/ana/a project';
const text = 'https://example.org/?q="a\\b"\r\n\t\u0001\u007f\u2028é😀';

// What the broker says of an entry and of an image, and what the client is told.
const brokerEntry = {
    entryID: 'E-1', createdAt: 777000000.25, kind: 'link', preview: text, detail: '', mark: 'not passed on',
    sourceApplication: 'Safari', text, filePaths: ['/tmp/é', ''],
};
const entry = {
    entry_id: 'E-1', created_at: 777000000.25, kind: 'link', preview: text, detail: '',
    source_application: 'Safari', text, file_paths: ['/tmp/é', ''],
};
const brokerImage = {
    assetID: hash, entryID: 'E-2', uti: 'public.png', byteCount: 5e9, bitExact: true, width: 640, height: 480,
    pixelHash: hash, workspacePath: `${workspaceRoot}/1.png`, relativePath: '1.png',
};
const image = {
    asset_id: hash, entry_id: 'E-2', uti: 'public.png', byte_count: 5e9, bit_exact: true, width: 640, height: 480,
    pixel_hash: hash, workspace_path: `${workspaceRoot}/1.png`, relative_path: '1.png',
};

// By operation: the fields that the broker must be sent, and its answer.
const operations = {
    status: [{}, { operation: 'status', historyAccess: [{ maxItems: 9 }] }],
    search_history: [{ query: ' é/"', limit: 100 }, { matched: true, entries: [brokerEntry, brokerEntry] }],
    get_history_item: [{ entryID: 'E-1' }, { entries: [brokerEntry] }],
    resolve: [{ attachments: [{ assetID: hash }], workspaceRoot, sessionID: 's', turnID: 't' },
              { matched: true, confidence: 0.75, images: [brokerImage] }],
    current_prompt_assets: [{}, { matched: true, images: [brokerImage] }],
    materialize: [{ assetID: hash, workspaceRoot }, { images: [brokerImage] }],
    metadata: [{ assetID: hash }, { images: [brokerImage] }],
};

// By tool: the arguments of the call, and its result.
const prompt = { workspace_root: workspaceRoot, session_id: 's', turn_id: 't' };
const resolved = { matched: true, confidence: 0.75, images: [image] };
const current = { matched: true, images: [image], next_step: 'Read the returned workspace files.' };
const copied = { workspace_path: image.workspace_path, relative_path: '1.png', bit_exact: true, conversion: null };
const toolsFor = agent => ({
    get_integration_status: [{}, { connected: true, agent, history_access: [{ max_items: 9 }] }],
    search_clipboard_history: [{ query: ' é/"', limit: 100 }, { matched: true, items: [entry, entry] }],
    get_clipboard_item: [{ entry_id: 'E-1' }, entry],
    resolve_image_references: [{ references: [`quorvantis://image/${hash}`], ...prompt }, resolved],
    resolve_current_prompt_images: [{ attachments: [{ asset_id: hash }], ...prompt }, resolved],
    materialize_asset: [{ asset_id: hash, workspace_root: workspaceRoot }, copied],
    get_asset_metadata: [{ asset_id: hash }, image],
    ...(agent === 'cursor' && { get_current_prompt_assets: [{}, current] }),
});
const failures = [['search_clipboard_history', { query: 'refuse me' }, refusal], ['paste', {}, 'Unknown tool']];

function answer({ requestID, operation, ...request }, agent) {
    try {
        if (request.query === 'refuse me') throw new Error(refusal);
        const [fields, result] = operations[operation];
        assert.deepEqual(request, { version: 1, agent, ...identity, ...fields });
        return { version: 1, requestID, ok: true, ...result };
    } catch (error) {
        return { version: 1, requestID, ok: false, error: error.message };
    }
}

const brokerFor = agent => createServer(socket => {
    let line = '';
    socket.setEncoding('utf8').on('data', chunk => {
        line += chunk;
        if (line.endsWith('\n')) socket.end(JSON.stringify(answer(JSON.parse(line), agent)) + '\n');
    });
});

async function install(agent, folder) {
    const agents = join(folder, 'Integrations/Agents'), credentialPath = join(folder, 'credential');
    for (const each of [agents, join(folder, 'Runtime')]) await mkdir(each, { recursive: true });
    await writeFile(credentialPath, identity.credential);
    await writeFile(join(agents, `${agent}.json`), JSON.stringify({
        agent, installedAt: 0, clientID: identity.clientID, credentialPath,
        credentialHash: createHash('sha256').update(identity.credential).digest('hex'),
        mcpServerName: '', mcpExecutablePath: '', hookExecutablePath: '', managedEntries: [], backupPaths: [],
    }));
    return ['serve', '--agent', agent, '--client-id', identity.clientID, '--credential-file', credentialPath];
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

async function checkTool(client, { name, inputSchema }, [args, expected]) {
    const { valid, errorMessage } = new AjvJsonSchemaValidator().getValidator(inputSchema)(args);
    assert.ok(valid, `${name}: ${errorMessage}`);
    const result = await client.callTool({ name, arguments: args });
    // The broker's numbers are written as JavaScript writes them, so that even the text must be the same.
    const content = [{ type: 'text', text: JSON.stringify(result.structuredContent) }];
    assert.deepEqual(result, { content, structuredContent: expected, isError: false });
}

for (const agent of ['codex', 'cursor'])
    for (const version of ['2024-11-05', '2025-03-26', '2025-06-18', '2025-11-25'])
        test(`${agent}, ${version}`, { timeout: 20_000 }, async t => {
            const folder = await mkdtemp('/tmp/qv-'); // not $TMPDIR: its path can be too long for a socket
            const client = new Client({ name: 'session test', version: '1' });
            const broker = brokerFor(agent);
            t.after(async () => {
                await client.close();
                broker.close();
                await rm(folder, { recursive: true, force: true });
            });
            const args = await install(agent, folder);
            await once(broker.listen(join(folder, 'Runtime/quorvantis.sock')), 'listening');
            const env = { QUORVANTIS_TESTING: '1', QUORVANTIS_APP_SUPPORT: folder };
            const transport = transportFor(version, { command: server, args, env });
            const errors = [];  // such as lines that are no messages, and answers to no request
            client.onerror = error => errors.push(error);
            let listChanges = 0;
            client.setNotificationHandler(ToolListChangedNotificationSchema, () => ++listChanges);

            await client.connect(transport);
            const exit = once(transport._process, 'exit');
            assert.equal(transport.negotiated, version);
            assert.deepEqual(client.getServerVersion(), { name: 'Quorvantis', version: '1.0.0' });
            assert.deepEqual(await client.ping(), {});
            assert.equal(listChanges, 1, 'list changes notified by the time of the answer to the ping');

            const tools = toolsFor(agent), listed = (await client.listTools()).tools;
            const names = listed.map(tool => tool.name);
            assert.deepEqual(names.sort(), Object.keys(tools).sort(), 'the tools listed have their rows here');
            await Promise.all(listed.map(tool => checkTool(client, tool, tools[tool.name])));

            for (const [name, args, message] of failures) {
                const failed = { content: [{ type: 'text', text: message }], isError: true };
                assert.deepEqual(await client.callTool({ name, arguments: args }), failed);
            }
            await assert.rejects(client.listResources(), { code: -32601, message: /Method not found/ });

            await client.close();
            assert.deepEqual(await exit, [0, null], 'exit status and signal');
            assert.deepEqual(errors, []);
            assert.equal(listChanges, 1);
        });
