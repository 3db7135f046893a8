" :make checks the process file with its layout: b:zelmo_layout or g:zelmo_layout, or the file beside
" it of the same name with .gds. What stands behind :make goes to zelmo-batch.
if exists('current_compiler')
  finish
endif
let current_compiler = 'zelmo'

let s:layout = get(b:, 'zelmo_layout', get(g:, 'zelmo_layout', ''))
let s:layout = s:layout ==# '' ? '%:r:S.gds' : shellescape(s:layout)
execute 'CompilerSet makeprg='
      \ . escape('zelmo-batch --check --diagnostics gcc $* ' . s:layout . ' %:S', ' \|"')

CompilerSet errorformat=
      \%-Gzelmo-batch:\ watching%.%#,
      \zelmo-batch:\ %trror:\ %m,
      \%f:%l:\ %trror:\ %m,
      \%f:%l:\ %tarning:\ %m,
      \%f:%l:\ %tote:\ %m,
      \%f:\ %trror:\ %m,
      \%f:\ %tarning:\ %m,
      \%f:\ %tote:\ %m,
      \zelmo-batch:\ %m,
      \%-G%.%#
