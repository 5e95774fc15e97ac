@echo off
rem Starts the analysis: statisticspython3.bat SCRIPT PAYLOAD
setlocal
rem Only a routine knows the folder of a launcher that was found on the search path.
call :locate
"%folder%genostat-analysis.exe" %*
exit /b %ERRORLEVEL%

:locate
set "folder=%~dp0"
exit /b 0
