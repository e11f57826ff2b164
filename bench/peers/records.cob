*> Reads the records of each kind into the storage of their fields.
identification division.
program-id. records.
environment division.
input-output section.
file-control.
    select entrada assign to dynamic nome organization line sequential.
data division.
file section.
fd entrada.
01 registro.
   02 codigo pic 99.
@LAYOUT@
working-storage section.
01 nome pic x(250).
01 arquivos binary-long.
01 quantidade binary-long occurs 99 value 0.
01 soma binary-double value 0.
01 i binary-long.
01 fim pic 9.
01 mostra-codigo pic 99.
01 mostra-numero pic z(17)9.
procedure division.
    accept arquivos from argument-number
    perform arquivos times
        accept nome from argument-value
        open input entrada
        move 0 to fim
        perform until fim = 1
            read entrada
                at end move 1 to fim
                not at end
                    add 1 to quantidade(codigo)
                    if codigo = 10 add campo-10-3 to soma end-if
            end-read
        end-perform
        close entrada
    end-perform
    perform varying i from 1 by 1 until i > 99
        if quantidade(i) > 0
            move i to mostra-codigo
            move quantidade(i) to mostra-numero
            display mostra-codigo " " mostra-numero
        end-if
    end-perform
    move soma to mostra-numero
    display "sum " mostra-numero
    stop run.
