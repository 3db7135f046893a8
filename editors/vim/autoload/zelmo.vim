" Runs a process file again whenever it or its layout is saved, and keeps the quickfix list at what the
" last run said.

let s:job = v:null
let s:lines = []

" Starts zelmo-batch --watch on the file of this buffer; `options` are more of its options.
function! zelmo#Watch(options) abort
  if !has('job') || !has('channel')
    echoerr 'zelmo: this Vim cannot run jobs; run zelmo-batch --watch in a terminal'
    return
  endif
  call zelmo#Unwatch()
  let s:lines = []
  let l:layout = get(b:, 'zelmo_layout', get(g:, 'zelmo_layout', expand('%:r') . '.gds'))
  let s:format = &l:errorformat
  let s:job = job_start(['zelmo-batch', '--watch', '--diagnostics', 'gcc'] + a:options
        \ + [l:layout, expand('%')],
        \ {'out_io': 'null', 'err_cb': function('s:TakeLine'), 'exit_cb': function('s:End'),
        \  'stoponexit': 'int'})
endfunction

" Ends it, as Ctrl-C does in a terminal.
function! zelmo#Unwatch() abort
  if type(s:job) == v:t_job && job_status(s:job) ==# 'run'
    call job_stop(s:job, 'int')
  endif
endfunction

" A run is over when the program waits for the next save.
function! s:TakeLine(channel, line) abort
  if a:line =~# '^zelmo-batch: watching '
    call s:Show()
  else
    call add(s:lines, a:line)
  endif
endfunction

function! s:End(job, status) abort
  if a:job is s:job
    call s:Show()
  endif
endfunction

function! s:Show() abort
  call setqflist([], ' ', {'title': 'zelmo-batch --watch', 'lines': s:lines, 'efm': s:format})
  let l:count = len(filter(getqflist(), 'v:val.valid'))
  let s:lines = []
  redraw
  echo l:count == 0 ? 'zelmo-batch: all done' : printf('zelmo-batch: %d to look at (:copen)', l:count)
endfunction
