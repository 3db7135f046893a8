" Process files of Zelmo: how they are typed, :make, and :ZelmoWatch.
if exists('b:did_ftplugin')
  finish
endif
let b:did_ftplugin = 1

" A remark is a line of its own, and tabs do not separate arguments from their values.
setlocal commentstring=#\ %s
setlocal comments=:#
setlocal formatoptions-=t
setlocal expandtab

compiler zelmo

command! -buffer -nargs=* -complete=file ZelmoWatch call zelmo#Watch([<f-args>])
command! -buffer ZelmoUnwatch call zelmo#Unwatch()

let b:undo_ftplugin = 'setlocal commentstring< comments< formatoptions< expandtab< makeprg<'
      \ . ' errorformat< | delcommand -buffer ZelmoWatch | delcommand -buffer ZelmoUnwatch'
