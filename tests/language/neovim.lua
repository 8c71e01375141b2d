-- Works on page.html as its author would, and notes what Neovim got. NeovimTest.cpp starts it.
vim.o.swapfile = false
local notes = {}
local function note(text) vim.list_extend(notes, vim.split(text, '\n')) end
local function finish(code)
  vim.fn.writefile(notes, 'notes.txt')
  vim.cmd('cquit ' .. code)
end
-- A limit for hung machines; nothing waits that long.
local function wait(what, happened)
  if not vim.wait(120000, happened, 5) then error(what .. ' never came') end
end
local function ask(method, params)
  local answers, why = vim.lsp.buf_request_sync(0, 'textDocument/' .. method,
    vim.tbl_extend('force', vim.lsp.util.make_position_params(), params or {}), 120000)
  if not answers then error(method .. ': ' .. why) end
  for _, answer in pairs(answers) do return answer.result end
end
local function find(text)
  vim.api.nvim_win_set_cursor(0, { 1, 0 })
  if vim.fn.search(text) == 0 then error(text .. ' is not there') end
end
local function problems(count)
  wait(count .. ' problems', function() return #vim.diagnostic.get(0) == count end)
  for _, problem in ipairs(vim.diagnostic.get(0)) do
    note(string.format('%d:%d %s: %s', problem.lnum + 1, problem.col + 1, problem.code, problem.message))
  end
end

local function work()
  vim.cmd('edit page.html')
  note('# a misspelt field, typed')
  find('"City"')
  vim.cmd('normal! l4xiCtiy')
  problems(1)

  note('# completion there')
  for _, item in ipairs(ask('completion').items) do note(item.label .. ': ' .. (item.detail or '')) end

  note('# fixed')
  vim.ui.select = function(actions, _, choose) note(actions[1][2].title); choose(actions[1]) end
  vim.lsp.buf.code_action()
  wait('the fix', function() return vim.fn.search('"City"', 'nw') > 0 end)
  problems(0)

  note('# hover')
  find('BonusPoints# /')
  note(ask('hover').contents.value)

  note('# renamed')
  vim.lsp.buf.rename('Points')
  wait('the new name', function() return vim.fn.search('#customer.Points#', 'nw') > 0 end)
  problems(0)
  local definition
  wait('the definition', function()  -- Neovim sends changes of other buffers a little later
    definition = ask('definition')
    return definition
  end)
  note(vim.fn.fnamemodify(vim.uri_to_fname(definition.uri), ':t') .. ':' .. definition.range.start.line + 1)
  wait('all uses', function()
    return #ask('references', { context = { includeDeclaration = true } }) == 4
  end)
  vim.cmd('wall')
  vim.lsp.stop_client(vim.lsp.get_active_clients())
  wait('the end of the server', function() return #vim.lsp.get_active_clients() == 0 end)
end

vim.defer_fn(function()
  local good, why = xpcall(work, debug.traceback)
  if not good then note(why) end
  finish(good and 0 or 1)
end, 0)
