# Other programs: commands that are read from or written to, pipes, processes, the environment.

popen := proc()
  description "popen(command, READ), popen(command, WRITE): the number of a file that reads what the command prints, or writes what it reads";
  iolib(20, args)
end proc:

pclose := proc()
  description "pclose(file, ...): waits for the end of the commands and closes their files";
  iolib(7, args)
end proc:

pipe := proc()
  description "pipe(): the list of two numbers, of the end to read from and of the end to write to";
  iolib(15, args)
end proc:

readyfiles := proc()
  description "readyfiles(seconds, pipe, ...): the list of those pipes that can be read from or written to, once there are some or the time has passed";
  iolib(19, args)
end proc:

fork := proc()
  description "fork(): goes on as two processes; the number of the new one, and 0 in that";
  iolib(16, args)
end proc:

exec := proc()
  description "exec(command, argument, ...): the command takes the place of this program";
  iolib(17, args)
end proc:

wait := proc()
  description "wait(): waits for the end of a process that fork began; the list of its number and its exit code";
  iolib(18, args)
end proc:

kill := proc()
  description "kill(process, ...): ends the processes of those numbers";
  iolib(22, args)
end proc:

getenv := proc()
  description "getenv(name): the value of a variable of the environment as a string, or nothing";
  iolib(28, args)
end proc:

systemtime := proc()
  description "systemtime(): seconds since the beginning of 1970";
  iolib(25)
end proc:
