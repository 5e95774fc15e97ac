@echo off
rem Starts the analysis: statisticspython3.bat SCRIPT PAYLOAD
"%~dp0genostat-analysis.exe" %*
exit /b %ERRORLEVEL%
